// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <QIcon>
#include <QPalette>
#include <QString>

class QCheckBox;

/// Icons and colours for light and dark palettes. Bound to the GUI thread.
namespace Theme {

/// Whether the window colour's lightness is below 100 (of 255).
bool isDark(const QPalette& palette);

/// An icon from a resource, with that of \p checkedFile for the checked state, if given. It is pale
/// while disabled; in dark palettes the styles' own disabled icons are not.
QIcon icon(const QString& file, const QString& checkedFile = {});

/// The colour inside of an unchecked box. In dark palettes the styles' own is hardly different from
/// the window's.
QColor boxColor(const QPalette& palette);

/// Fills a check box with that colour; to be called again when the palette has changed.
void fillBox(QCheckBox& box);

} // namespace Theme
