// SPDX-License-Identifier: BSD-3-Clause
#include "tests/cli/SpanletProcess.h"

#include <QStandardPaths>
#include <gmock/gmock.h>

using testing::ContainsRegex;
using testing::HasSubstr;

namespace {

TEST(Output, failsTheCommandWhenItCannotBeWritten) {
    const std::pair<const char*, const char*> cases[] = {
        {"list >/dev/full", "cannot be written: No space left"},
        {"list >&-", "cannot be written: Bad file"},
        {"watch --interface GEV-enp3s0 --seconds 60 --interval 0.1 | head -2", ""}};
    for (const auto& [line, message] : cases) {
        QProcess shell;
        shell.start(QStringLiteral("bash"),
                    {QStringLiteral("-c"),
                     QStringLiteral("set -o pipefail; " SPANLET_FILE " ") + QLatin1String(line)});
        ASSERT_TRUE(shell.waitForFinished(30000));
        EXPECT_EQ(shell.exitCode(), 1) << line;
        EXPECT_THAT(shell.readAllStandardError().toStdString(), HasSubstr(message));
    }
}

TEST(Watch, redrawsItsTableOnATerminal) {
    const QString script = QStandardPaths::findExecutable(QStringLiteral("script"));
    if (script.isEmpty())
        GTEST_SKIP() << "There is no program \"script\" to make a terminal with.";
    QProcess terminal;
    terminal.start(script,
                   {QStringLiteral("-qec"),
                    QStringLiteral("stty cols 60 rows 6; TERM=xterm " SPANLET_FILE
                                   " watch --interface GEV-enp3s0 --seconds 1 --interval 0.3"),
                    QStringLiteral("/dev/null")});
    ASSERT_TRUE(terminal.waitForFinished(30000));
    EXPECT_EQ(terminal.exitCode(), 0);
    const std::string text = terminal.readAllStandardOutput().toStdString();
    EXPECT_THAT(text, HasSubstr("of 1 s [#########....."));
    // The losses stay in a narrow terminal.
    EXPECT_THAT(text, ContainsRegex("\nCamera +Frames/s +MB/s +Lost +Incomplete +Loss %\r\n"));
    EXPECT_THAT(text, HasSubstr("(3 more lines)"));
    // The terminal has six rows: five lines and the cursor.
    EXPECT_THAT(text, HasSubstr("\x1b[5F\x1b[JMRD GigE Interface enp3s0  0."));
}

} // namespace
