// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <QMetaType>

/// The stream of a log line. Values from 0 to 2 are treated like StdOut.
enum class LogMessageType : int { StdOut = 1, StdErr = 3 };

Q_DECLARE_METATYPE(LogMessageType)
