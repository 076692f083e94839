// SPDX-License-Identifier: BSD-3-Clause
#include "tests/cli/SpanletProcess.h"

#include <QDir>
#include <QFile>
#include <QRegularExpression>
#include <QSet>
#include <gmock/gmock.h>

using testing::HasSubstr;

namespace {

QString helpOf(const QString& command) {
    SpanletProcess spanlet;
    EXPECT_EQ(spanlet.run(command + QStringLiteral(" --help")), 0);
    return QString::fromUtf8(spanlet.out());
}

QSet<QString> optionsIn(const QString& text) {
    QSet<QString> options;
    auto found = QRegularExpression(QStringLiteral("--[a-z][a-z-]+")).globalMatch(text);
    while (found.hasNext())
        options.insert(found.next().captured());
    return options;
}

QStringList commands() {
    QStringList names;
    auto found =
        QRegularExpression(QStringLiteral("^  ([a-z]+) "), QRegularExpression::MultilineOption)
            .globalMatch(helpOf({}));
    while (found.hasNext())
        names.append(found.next().captured(1));
    return names;
}

/// The completions of bash after these words.
QStringList completions(const QString& words) {
    QProcess bash;
    bash.start(QStringLiteral("bash"),
               {QStringLiteral("-euc"),
                QStringLiteral("source " COMPLETION_FILE "; COMP_WORDS=(spanlet %1 '');"
                               "COMP_CWORD=$((${#COMP_WORDS[@]} - 1)); _spanlet;"
                               "printf '%s\\n' \"${COMPREPLY[@]}\"")
                    .arg(words)});
    EXPECT_TRUE(bash.waitForFinished());
    EXPECT_EQ(bash.exitCode(), 0) << bash.readAllStandardError().toStdString();
    return QString::fromUtf8(bash.readAllStandardOutput())
        .split(QLatin1Char('\n'), Qt::SkipEmptyParts);
}

QString manPage() {
    QFile file(QStringLiteral(MAN_PAGE_FILE));
    EXPECT_TRUE(file.open(QIODevice::ReadOnly));
    return QString::fromUtf8(file.readAll()).replace(QStringLiteral("\\-"), QStringLiteral("-"));
}

TEST(Documentation, completionOffersAndManPageTellsCommandsAndTheirOptions) {
    const QStringList names = commands();
    EXPECT_EQ(names.size(), 8);
    const QStringList offered = completions({});
    const QSet<QString> explained = optionsIn(manPage());
    for (const QString& name : names) {
        SCOPED_TRACE(name.toStdString());
        EXPECT_TRUE(offered.contains(name));
        EXPECT_TRUE(
            manPage().contains(QRegularExpression(QStringLiteral("[BIf ]%1\\b").arg(name))));
        const QString help = helpOf(name);
        EXPECT_THAT(help.toStdString(), HasSubstr("\nExamples:\n  spanlet " + name.toStdString()));
        const QStringList after = completions(name);
        const QSet<QString> options = optionsIn(help.section(QStringLiteral("Options:"), 1));
        EXPECT_GE(options.size(), 6);
        for (const QString& option : options) {
            EXPECT_TRUE(after.contains(option)) << option.toStdString();
            EXPECT_TRUE(explained.contains(option)) << option.toStdString();
        }
    }
}

TEST(Documentation, completionKnowsTheKindsOfCameras) {
    const QStringList kinds{QStringLiteral("simulated"), QStringLiteral("genicam")};
    EXPECT_EQ(completions(QStringLiteral("list --cameras")), kinds);
    EXPECT_EQ(completions(QStringLiteral("list --cameras =")), kinds);
}

TEST(Documentation, completionKnowsTheEmbeddedScenarios) {
    const QStringList offered = completions(QStringLiteral("list --config :"));
    const QStringList files =
        QDir(QStringLiteral(SCENARIO_FOLDER)).entryList({QStringLiteral("*.json")}, QDir::Files);
    EXPECT_GE(files.size(), 5);
    for (const QString& file : files)
        EXPECT_TRUE(offered.contains(file.section(QLatin1Char('.'), 0, 0))) << file.toStdString();
}

TEST(Documentation, completionTakesNoValueForACommand) {
    EXPECT_TRUE(completions(QStringLiteral("--config list")).contains(QStringLiteral("benchmark")));
}

TEST(Documentation, helpFitsATerminal) {
    const QStringList lines = helpOf({}).split(QLatin1Char('\n'));
    EXPECT_GT(lines.size(), 10);
    for (const QString& line : lines)
        EXPECT_LT(line.size(), 80) << line.toStdString();
}

} // namespace
