// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <QString>
#include <QtGlobal>

/// Hands Qt's own messages to the logging functions; for qInstallMessageHandler. Thread-safe.
///
/// Debug and info messages keep their level, everything from warning to fatal becomes a warning;
/// what else happens at a fatal message is left to Qt. A message with a context tells its function,
/// file and line.
void qtMessageHandler(QtMsgType type, const QMessageLogContext& context, const QString& message);
