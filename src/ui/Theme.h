// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <QIcon>
#include <QPalette>
#include <QString>

class QCheckBox;

/// What the dialogs need to be legible in light and dark colours. Bound to the GUI thread.
namespace Theme {

/// Whether the window colour's lightness is below 100 (of 255).
bool isDark(const QPalette& palette);

/// An icon from a resource, with another one for the checked state where \p checkedFile names it.
/// It is pale while its widget is disabled, which the styles' own disabled icons are not in dark
/// colours.
QIcon icon(const QString& file, const QString& checkedFile = {});

/// The colour that an unchecked box is filled with. In dark colours the styles' own is hardly
/// different from the window's.
QColor boxColor(const QPalette& palette);

/// Fills a check box with that colour; to be called again when the palette has changed.
void fillBox(QCheckBox& box);

} // namespace Theme
