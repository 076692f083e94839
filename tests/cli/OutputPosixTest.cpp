// SPDX-License-Identifier: BSD-3-Clause
#include "tests/cli/SpanletProcess.h"
#include "tests/support/FileTree.h"

#include <QStandardPaths>
#include <gmock/gmock.h>

#include <sys/stat.h>

using testing::ContainsRegex;
using testing::HasSubstr;
using testing::Not;

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

TEST(Output, replacesNoPipeByAFile) {
    const FileTree files;
    const std::string pipe = (files.root() / "pipe").string();
    ASSERT_EQ(mkfifo(pipe.c_str(), 0600), 0);
    for (const char* command : {"save ", "report --seconds 0.1 --all --markdown "}) {
        SpanletProcess spanlet;
        EXPECT_EQ(spanlet.run(command + pipe), 1);
        EXPECT_THAT(spanlet.err(), HasSubstr(pipe + " cannot be written: It is no regular file."));
    }
    EXPECT_TRUE(std::filesystem::is_fifo(pipe));
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
    EXPECT_THAT(text, HasSubstr("of 1 s [##......]"));
    // The losses stay in a narrow terminal.
    EXPECT_THAT(text, ContainsRegex("\nCamera +Frames/s +MB/s +Lost +Incomplete +Loss %\r\n"));
    EXPECT_THAT(text, HasSubstr("(3 more lines)"));
    // The terminal has six rows: five lines and the cursor.
    EXPECT_THAT(text, HasSubstr("\x1b[5F\x1b[JMRD GigE Interface enp3s0 (simulated)  0."));
}

TEST(Watch, drawsBarsInTheEncodingOfTheTerminal) {
    const QString script = QStandardPaths::findExecutable(QStringLiteral("script"));
    if (script.isEmpty())
        GTEST_SKIP() << "There is no program \"script\" to make a terminal with.";
    const std::pair<const char*, const char*> cases[] = {{"C.UTF-8", "(█)+(░)+\r\n"},
                                                         {"C", "#+[.]+\r\n"}};
    for (const auto& [locale, bar] : cases) {
        QProcess terminal;
        terminal.start(script,
                       {QStringLiteral("-qec"),
                        QStringLiteral("stty cols 120 rows 9; LC_ALL=%1 TERM=xterm " SPANLET_FILE
                                       " watch --interface GEV-enp3s0 --seconds 0.6 "
                                       "--interval 0.3")
                            .arg(QLatin1String(locale)),
                        QStringLiteral("/dev/null")});
        ASSERT_TRUE(terminal.waitForFinished(30000));
        const std::string text = terminal.readAllStandardOutput().toStdString();
        const std::string screen = text.substr(0, text.find("(simulated)\r\n"));
        EXPECT_THAT(screen, ContainsRegex("Share of link\r\n"));
        EXPECT_THAT(screen, ContainsRegex(std::string("\nTotal +[0-9. ]+") + bar));
        EXPECT_THAT(text.substr(screen.size()), Not(HasSubstr("Share"))) << "not in the result";
    }
}

TEST(Watch, scrollsByKeysAndLeavesTheTerminalAsItWas) {
    const QString script = QStandardPaths::findExecutable(QStringLiteral("script"));
    if (script.isEmpty())
        GTEST_SKIP() << "There is no program \"script\" to make a terminal with.";
    const struct {
        const char* key;
        const char* shown;
        const char* end;
        const char* ending;
    } cases[] = {{"\x1b[B", "\nGEV-20844", "q", "mode kept, 0"},
                 {"\x1b[6~", "\nTotal", "\x03", "mode kept, 0"},
                 {"\x1bOF", "\nTotal", "\x1c", "mode kept, 131"}};
    for (const auto& [key, shown, end, ending] : cases) {
        QProcess terminal;
        terminal.start(
            script,
            {QStringLiteral("-qec"),
             QStringLiteral("trap : INT QUIT; ulimit -c 0; stty cols 60 rows 7; mode=$(stty -g);"
                            "TERM=xterm " SPANLET_FILE " watch --interface GEV-enp3s0; code=$?;"
                            "[ $mode = $(stty -g) ] && echo mode kept, $code"),
             QStringLiteral("/dev/null")});
        std::string text;
        const auto awaitText = [&](const char* wanted) {
            for (int i = 0; i < 200 && text.find(wanted) == std::string::npos; ++i) {
                terminal.waitForReadyRead(100);
                text += terminal.readAllStandardOutput().toStdString();
            }
            EXPECT_THAT(text, HasSubstr(wanted));
        };
        awaitText("(2 more lines)");
        EXPECT_THAT(text, Not(HasSubstr(shown)));
        terminal.write(key);
        awaitText(shown);
        EXPECT_THAT(text, Not(ContainsRegex("\x1b\\[J[C-]"))) << "the headings stay";
        terminal.write(end);
        awaitText(ending);
        EXPECT_TRUE(terminal.waitForFinished(30000));
    }
}

} // namespace
