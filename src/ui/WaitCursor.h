// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <QGuiApplication>

/// Shows the wait cursor over all windows while it exists. Bound to the GUI thread.
class WaitCursor {
public:
    WaitCursor() { QGuiApplication::setOverrideCursor(Qt::WaitCursor); }
    ~WaitCursor() { QGuiApplication::restoreOverrideCursor(); }
    WaitCursor(const WaitCursor&) = delete;
    WaitCursor& operator=(const WaitCursor&) = delete;
};
