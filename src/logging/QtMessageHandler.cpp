// SPDX-License-Identifier: BSD-3-Clause
#include "logging/QtMessageHandler.h"

#include "logging/Log.h"

#include <string>

namespace {

std::string messageText(const QMessageLogContext& context, const QString& message) {
    if (context.function == nullptr)
        return message.toStdString();
    const std::string file = context.file == nullptr ? "" : context.file;
    // Log lines are UTF-8, whatever the local encoding can express.
    return QString::fromLocal8Bit(message.toLocal8Bit()).toStdString() + " (" + context.function +
           " in " + file + ':' + std::to_string(context.line) + ')';
}

} // namespace

void qtMessageHandler(QtMsgType type, const QMessageLogContext& context, const QString& message) {
    const std::string text = messageText(context, message);
    switch (type) {
    case QtDebugMsg:
        logDebug(text);
        break;
    case QtInfoMsg:
        logInfo(text);
        break;
    case QtWarningMsg:
    case QtCriticalMsg:
    case QtFatalMsg:
        logWarning(text);
        break;
    }
}
