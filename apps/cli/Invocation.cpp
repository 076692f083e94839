// SPDX-License-Identifier: BSD-3-Clause
#include "cli/Invocation.h"

#include "cli/Commands.h"
#include "cli/Help.h"

#include <QCoreApplication>

#include <algorithm>
#include <vector>

namespace cli {

namespace {

const std::vector<Command>& commands() {
    static const std::vector<Command> all{
        listCommand(),   benchmarkCommand(), watchCommand(),    observeCommand(), autoSetCommand(),
        planCommand(),   calibrateCommand(), featuresCommand(), getCommand(),     setCommand(),
        setIpCommand(),  runCommand(),       saveCommand(),     restoreCommand(), doctorCommand(),
        reportCommand(), helpCommand()};
    return all;
}

QList<QCommandLineOption> commonOptions() {
    return session::cameraOptions() +
           QList<QCommandLineOption>{
               {QStringLiteral("json"),
                QStringLiteral("Print JSON: one document, or one line for each interval.")},
               {{QStringLiteral("v"), QStringLiteral("verbose")},
                QStringLiteral("Show informative messages, too; given twice, debug messages.")},
               {{QStringLiteral("h"), QStringLiteral("help")},
                QStringLiteral("Explain the program, or the command.")},
               {QStringLiteral("version"), QStringLiteral("Print the version.")}};
}

/// Adds the common options, and those of \p command when there is one.
void prepare(QCommandLineParser& parser, const Command* command) {
    if (command)
        parser.addOptions(command->options);
    parser.addOptions(commonOptions());
}

/// For the options in front of the command, which becomes the first positional argument.
void prepareFirst(QCommandLineParser& parser) {
    parser.setOptionsAfterPositionalArgumentsMode(QCommandLineParser::ParseAsPositionalArguments);
    prepare(parser, nullptr);
}

QString dashed(const QString& name) {
    return (name.size() == 1 ? QStringLiteral("-") : QStringLiteral("--")) + name;
}

bool isOptionOfACommand(const QString& name) {
    return std::any_of(commands().begin(), commands().end(), [&](const Command& command) {
        const auto& options = command.options;
        return std::any_of(options.begin(), options.end(), [&](const QCommandLineOption& option) {
            return option.names().contains(name);
        });
    });
}

void parse(QCommandLineParser& parser, const QStringList& arguments, const Command* command) {
    if (parser.parse(arguments))
        return;
    const QStringList unknown = parser.unknownOptionNames();
    if (unknown.isEmpty())
        throw Failure(parser.errorText(), ExitCode::WrongUse);
    const QString wrong = dashed(unknown.constFirst());
    if (!command && isOptionOfACommand(unknown.constFirst()))
        throw Failure(
            QStringLiteral("\"%1\" belongs to a command: write it behind the command.").arg(wrong),
            ExitCode::WrongUse);
    QStringList known;
    for (const QCommandLineOption& option :
         (command ? command->options : QList<QCommandLineOption>()) + commonOptions())
        known.append(dashed(option.names().constLast()));
    throw Failure(QStringLiteral("There is no option \"%1\".").arg(wrong) + thereIs(known),
                  ExitCode::WrongUse);
}

QStringList commandNames() {
    QStringList names;
    for (const Command& command : commands())
        names.append(command.name);
    return names;
}

const Command& findCommand(const QString& name) {
    const auto found = std::find_if(commands().begin(), commands().end(),
                                    [&](const Command& command) { return command.name == name; });
    if (found != commands().end())
        return *found;
    throw Failure(QStringLiteral("There is no command \"%1\".").arg(name) + thereIs(commandNames()),
                  ExitCode::WrongUse);
}

} // namespace

Invocation::Invocation(const QStringList& arguments) {
    const QStringList shielded = Arguments::shielded(arguments);
    QCommandLineParser first;
    prepareFirst(first);
    parse(first, shielded, nullptr);
    const QStringList rest = first.positionalArguments();
    if (!rest.isEmpty())
        m_command = &findCommand(rest.constFirst());
    QStringList others = shielded;
    if (m_command)
        others.removeAt(shielded.size() - rest.size());
    prepare(m_parser, m_command);
    parse(m_parser, others, m_command);
}

QString Invocation::answer() const {
    if (m_parser.isSet(QStringLiteral("version")))
        return QStringLiteral("spanlet %1\n").arg(QCoreApplication::applicationVersion());
    if (m_parser.isSet(QStringLiteral("help")))
        return m_command ? helpText(m_parser, *m_command) : overviewText(commands());
    return m_command && !m_command->run ? explanation() : QString();
}

QString Invocation::explanation() const {
    checkOperands();
    const QStringList operands = Arguments(m_parser).operands();
    if (operands.isEmpty())
        return overviewText(commands());
    const Command& command = findCommand(operands.constFirst());
    QCommandLineParser parser;
    prepare(parser, &command);
    return helpText(parser, command);
}

QString Invocation::helpLine(const QStringList& arguments) {
    QCommandLineParser parser;
    prepareFirst(parser);
    // Collects positional arguments also where an option is wrong.
    parser.parse(Arguments::shielded(arguments));
    const QString name = parser.positionalArguments().value(0);
    const bool isExplained = name != helpCommand().name && commandNames().contains(name);
    return isExplained ? QStringLiteral("spanlet %1 --help").arg(name)
                       : QStringLiteral("spanlet help");
}

Context Invocation::context(Terminal& terminal, Interruption& interruption) const {
    if (!m_command)
        throw Failure(QStringLiteral("A command is needed.") + thereIs(commandNames()),
                      ExitCode::WrongUse);
    checkOperands();
    QString error;
    const session::CameraSource source = session::cameraSource(m_parser, error);
    if (!error.isEmpty())
        throw Failure(error, ExitCode::WrongUse);
    return {Arguments(m_parser), terminal, interruption, source, wantsJson()};
}

bool Invocation::wantsJson() const {
    return m_parser.isSet(QStringLiteral("json"));
}

Verbosity Invocation::verbosity() const {
    int count = 0;
    for (const QString& name : m_parser.optionNames())
        count += name == QLatin1String("v") || name == QLatin1String("verbose") ? 1 : 0;
    if (count == 0 && m_command && m_command->isQuiet)
        return Verbosity::Nothing;
    return static_cast<Verbosity>(std::min(count, 2));
}

void Invocation::checkOperands() const {
    const QStringList operands = Arguments(m_parser).operands();
    if (operands.size() > m_command->mostOperands)
        throw Failure(
            QStringLiteral("Unexpected argument \"%1\".").arg(operands[m_command->mostOperands]),
            ExitCode::WrongUse);
    if (operands.size() < m_command->fewestOperands)
        throw Failure(
            QStringLiteral("Usage: spanlet %1 %2").arg(m_command->name, m_command->operands),
            ExitCode::WrongUse);
}

} // namespace cli
