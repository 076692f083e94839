// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <QMetaType>

/// Where a log line was written. Every value from 0 to 2 is treated like StdOut.
enum class LogMessageType : int { StdOut = 1, StdErr = 3 };

Q_DECLARE_METATYPE(LogMessageType)
