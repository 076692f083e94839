// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <QString>
#include <QtGlobal>

/// Hands Qt's own messages to the logging functions; for qInstallMessageHandler. Thread-safe.
///
/// Debug and info messages keep their level, everything from warning to fatal becomes a warning;
/// Qt then ends the program after a fatal one. If the context has a function, the line ends with
/// function, file and line.
void qtMessageHandler(QtMsgType type, const QMessageLogContext& context, const QString& message);
