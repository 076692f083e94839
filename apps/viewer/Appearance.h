// SPDX-License-Identifier: BSD-3-Clause
#pragma once

namespace viewer {

/// Whether windows appear on a screen.
bool hasScreen();

/// Keeps the desktop's own look on a screen; without one, and in dark colours, the Fusion style is
/// used, which looks the same everywhere. Needs a QApplication.
void applyAppearance(bool isDark);

} // namespace viewer
