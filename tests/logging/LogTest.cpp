// SPDX-License-Identifier: BSD-3-Clause
#include "logging/Log.h"
#include "logging/QtMessageHandler.h"
#include "tests/support/CapturedLog.h"

#include <QTextCodec>
#include <gmock/gmock.h>

namespace {

using testing::ElementsAre;

TEST(LogTest, writesPrefixTextAndErrorToTheStandardOutput) {
    const CapturedLog log;
    const CapturedLog errorLog(std::cerr);
    logDebug("a");
    logInfo("b");
    logWarning("c");
    logError("");
    logDebug("a", OrvErrorSuccess);
    logInfo("b", OrvErrorNotFound);
    logWarning("c", OrvErrorTimeout);
    logError("d", 7000);
    EXPECT_EQ(log.text(),
              "Debug:a\nInfo:b\nWarning:c\nError:\nDebug:a (No error)\n"
              "Info:b (The designated instance (camera, feature etc.) cannot be found)\n"
              "Warning:c (Timeout during wait)\nError:d <Viewer Timeout>\n");
    EXPECT_EQ(errorLog.text(), "");
}

TEST(QtMessageHandlerTest, mapsTypesTellsTheFunctionAndWritesUtf8OfTheLocalEncoding) {
    CapturedLog log;
    for (const int type : {int{QtDebugMsg}, int{QtInfoMsg}, int{QtWarningMsg}, int{QtCriticalMsg},
                           int{QtFatalMsg}, 7})
        qtMessageHandler(static_cast<QtMsgType>(type), {}, QStringLiteral("t"));
    const QString text = QStringLiteral("%1 of 100%");
    qtMessageHandler(QtInfoMsg, {"a.cpp", 12, "f()", "category"}, text);
    qtMessageHandler(QtInfoMsg, {"a.cpp", 12, nullptr, "category"}, text);
    qtMessageHandler(QtInfoMsg, {nullptr, 0, "f()", "category"}, text);
    EXPECT_EQ(log.text(), "Debug:t\nInfo:t\nWarning:t\nWarning:t\nWarning:t\n"
                          "Info:%1 of 100% (f() in a.cpp:12)\nInfo:%1 of 100%\n"
                          "Info:%1 of 100% (f() in :0)\n");

    log.clear();
    QTextCodec* const previous = QTextCodec::codecForLocale();
    QTextCodec::setCodecForLocale(QTextCodec::codecForName("ISO-8859-1"));
    const QString foreign = QStringLiteral("\u00E4\u20AC");
    qtMessageHandler(QtInfoMsg, {}, foreign);
    qtMessageHandler(QtInfoMsg, {"a.cpp", 1, "f()", "category"}, foreign);
    QTextCodec::setCodecForLocale(previous);
    EXPECT_THAT(log.lines(),
                ElementsAre("Info:\xC3\xA4\xE2\x82\xAC", "Info:\xC3\xA4? (f() in a.cpp:1)"));
}

} // namespace
