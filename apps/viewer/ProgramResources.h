// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <QIcon>

class QLocale;
class QTranslator;

/// What is built into the viewer. Bound to the GUI thread.
namespace viewer {

/// The icon of its windows.
QIcon windowIcon();

/// Loads the viewer's texts in the language of \p locale. \return whether there are any; without
/// them the texts stay English.
bool loadTexts(QTranslator& texts, const QLocale& locale);

} // namespace viewer
