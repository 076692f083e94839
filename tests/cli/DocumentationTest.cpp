// SPDX-License-Identifier: BSD-3-Clause
#include "tests/cli/SpanletProcess.h"

#include <QDir>
#include <QFile>
#include <gmock/gmock.h>

using namespace testing;

namespace {

/// The completions of bash after these words.
Texts completions(const std::string& words) {
    QProcess bash;
    bash.start(QStringLiteral("bash"),
               {QStringLiteral("-euc"),
                QStringLiteral("source " COMPLETION_FILE "; COMP_WORDS=(spanlet %1 '');"
                               "COMP_CWORD=$((${#COMP_WORDS[@]} - 1)); _spanlet;"
                               "printf '%s\\n' \"${COMPREPLY[@]}\"")
                    .arg(QString::fromStdString(words))});
    EXPECT_TRUE(bash.waitForFinished());
    EXPECT_EQ(bash.exitCode(), 0) << bash.readAllStandardError().toStdString();
    return matches(bash.readAllStandardOutput().toStdString(), "^.+$");
}

TEST(Documentation, completionOffersAndManPageTellsCommandsAndTheirOptions) {
    QFile file(QStringLiteral(MAN_PAGE_FILE));
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    const std::string manPage = file.readAll().replace("\\-", "-").toStdString();
    const Texts explained = matches(manPage, "--[a-z][a-z-]+");
    const std::string help = textOf("--help");
    EXPECT_EQ(matches(help, "^.{80,}$"), Texts()) << "it fits a terminal";
    const Texts names = matches(help, "^  ([a-z]+) ");
    EXPECT_EQ(names.size(), 9U);
    EXPECT_EQ(textOf("help"), help);
    EXPECT_THAT(completions(""), IsSupersetOf(names));
    for (const std::string& name : names) {
        SCOPED_TRACE(name);
        EXPECT_FALSE(matches(manPage, ("[BIf ]" + name + "\\b").c_str()).empty());
        const std::string its = textOf(name + " --help");
        EXPECT_EQ(textOf("help " + name), its);
        EXPECT_THAT(its, HasSubstr("\nExamples:\n  spanlet " + name));
        const Texts options = matches(its.substr(its.find("Options:")), "--[a-z][a-z-]+");
        EXPECT_GE(options.size(), 6U);
        const Texts offered = completions(name);
        for (const std::string& option : options) {
            EXPECT_THAT(offered, Contains(option));
            EXPECT_THAT(explained, Contains(option));
        }
    }
}

TEST(Documentation, completionKnowsTheValuesOfOptions) {
    EXPECT_EQ(completions("list --cameras"), Texts({"simulated", "genicam"}));
    EXPECT_EQ(completions("list --cameras ="), Texts({"simulated", "genicam"}));
    EXPECT_THAT(completions("--config list"), Contains("benchmark")) << "list is a value";
    Texts scenarios;
    for (const QFileInfo& file :
         QDir(QStringLiteral(SCENARIO_FOLDER)).entryInfoList({QStringLiteral("*.json")}))
        scenarios.push_back(file.baseName().toStdString());
    EXPECT_GE(scenarios.size(), 5U);
    EXPECT_THAT(completions("list --config :"), IsSupersetOf(scenarios));
}

} // namespace
