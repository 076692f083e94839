// SPDX-License-Identifier: BSD-3-Clause
#include "cli/Help.h"

#include "cli/Commands.h"

#include <QCommandLineParser>

namespace cli {

namespace {

/// QCommandLineParser::helpText() breaks lines at this width.
constexpr int helpWidth = 79;

/// A text in indented lines of at most that width.
QString wrapped(const QString& text, int indent) {
    const QString margin(indent, QLatin1Char(' '));
    QString result;
    QString line;
    for (const QString& word : text.split(QLatin1Char(' '))) {
        if (!line.isEmpty() && indent + line.size() + 1 + word.size() > helpWidth) {
            result += margin + line + QLatin1Char('\n');
            line.clear();
        }
        line += line.isEmpty() ? word : QLatin1Char(' ') + word;
    }
    return result + margin + line + QLatin1Char('\n');
}

QString firstSentence(const QString& text) {
    const QString first = text.section(QLatin1String(". "), 0, 0);
    return first.endsWith(QLatin1Char('.')) ? first : first + QLatin1Char('.');
}

} // namespace

Command helpCommand() {
    Command command;
    command.name = QStringLiteral("help");
    command.summary = QStringLiteral("Explain the program, or a command.");
    command.operands = QStringLiteral("[COMMAND]");
    command.mostOperands = 1;
    command.examples = QStringList{QStringLiteral("help"), QStringLiteral("help autoset")};
    return command;
}

QString overviewText(const std::vector<Command>& commands) {
    constexpr int nameWidth = 13;
    QString text = QStringLiteral("Usage: spanlet COMMAND [options]\n\n"
                                  "Manages the bandwidth of GigE Vision and USB3 Vision cameras on "
                                  "this host.\n\nCommands:\n");
    for (const Command& command : commands)
        text += (QStringLiteral("  ") + command.name).leftJustified(nameWidth) +
                wrapped(firstSentence(command.summary), nameWidth).mid(nameWidth);
    return text + QStringLiteral("\n\"spanlet help COMMAND\" explains a command and its options.\n"
                                 "Exit codes: 0 done, 1 failed, 2 wrong use.\n");
}

QString helpText(const QCommandLineParser& parser, const Command& command) {
    const QStringList usage{QStringLiteral("Usage: spanlet"), command.name,
                            QStringLiteral("[options]"), command.operands};
    QString text = usage.join(QLatin1Char(' ')).trimmed() + QLatin1Char('\n');
    text += wrapped(command.summary, 0) + QLatin1Char('\n');
    // Drops the parser's usage line, which has the options in front of the command.
    const QString options = parser.helpText();
    text += options.mid(options.indexOf(QLatin1String("Options:")));
    text += QStringLiteral("\nExamples:\n");
    for (const QString& example : command.examples)
        text += QStringLiteral("  spanlet %1\n").arg(example);
    return text;
}

} // namespace cli
