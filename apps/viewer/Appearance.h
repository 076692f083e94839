// SPDX-License-Identifier: BSD-3-Clause
#pragma once

namespace viewer {

/// Whether windows appear on a screen.
bool hasScreen();

/// Keeps the desktop's style on a screen. Without a screen, and for dark colours, sets the Fusion
/// style, which looks the same everywhere. Requires a QApplication.
void applyAppearance(bool isDark);

} // namespace viewer
