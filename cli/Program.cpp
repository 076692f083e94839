// SPDX-License-Identifier: BSD-3-Clause
#include "cli/Program.h"

#include "cli/Commands.h"
#include "cli/LogOutput.h"
#include "cli/Near.h"
#include "cli/Screen.h"

#include <QCommandLineParser>
#include <QCoreApplication>
#include <QJsonDocument>

#include <algorithm>
#include <vector>

namespace cli {

namespace {

const std::vector<Command>& commands() {
    static const std::vector<Command> all{listCommand(),    benchmarkCommand(), watchCommand(),
                                          autoSetCommand(), featuresCommand(),  getCommand(),
                                          setCommand(),     runCommand()};
    return all;
}

QList<QCommandLineOption> commonOptions() {
    return session::cameraOptions() +
           QList<QCommandLineOption>{
               {QStringLiteral("json"), QStringLiteral("Print one JSON document.")},
               {{QStringLiteral("v"), QStringLiteral("verbose")},
                QStringLiteral("Show informative messages, too; given twice, debug messages.")},
               {{QStringLiteral("h"), QStringLiteral("help")},
                QStringLiteral("Explain the program, or the command.")},
               {QStringLiteral("version"), QStringLiteral("Print the version.")}};
}

QString firstSentence(const QString& text) {
    const QString first = text.section(QLatin1String(". "), 0, 0);
    return first.endsWith(QLatin1Char('.')) ? first : first + QLatin1Char('.');
}

QString overview() {
    QString text = QStringLiteral("Usage: spanlet COMMAND [options]\n\n"
                                  "Manages the bandwidth of GigE Vision and USB3 Vision cameras on "
                                  "this host.\n\nCommands:\n");
    for (const Command& command : commands())
        text +=
            QStringLiteral("  %1 %2\n").arg(command.name, -10).arg(firstSentence(command.summary));
    return text +
           QStringLiteral("\n\"spanlet COMMAND --help\" explains a command and its options.\n"
                          "Exit codes: 0 done, 1 failed, 2 wrong use.\n");
}

/// Adds the options of a command, or those that all have.
void prepare(QCommandLineParser& parser, const Command* command) {
    if (command) {
        parser.setApplicationDescription(command->summary);
        parser.addOptions(command->options);
    }
    parser.addOptions(commonOptions());
}

QString helpText(const QCommandLineParser& parser, const Command& command) {
    const QStringList usage{QStringLiteral("Usage: spanlet"), command.name,
                            QStringLiteral("[options]"), command.operands};
    // The parser's own first line has the options in front of the command.
    QString text = usage.join(QLatin1Char(' ')).trimmed() +
                   parser.helpText().mid(parser.helpText().indexOf(QLatin1Char('\n')));
    text += QStringLiteral("\nExamples:\n");
    for (const QString& example : command.examples)
        text += QStringLiteral("  spanlet %1\n").arg(example);
    return text;
}

QString dashed(const QString& name) {
    return (name.size() == 1 ? QStringLiteral("-") : QStringLiteral("--")) + name;
}

void parse(QCommandLineParser& parser, const QStringList& arguments, const Command* command) {
    if (parser.parse(arguments))
        return;
    const QStringList unknown = parser.unknownOptionNames();
    if (unknown.isEmpty())
        throw Failure(parser.errorText(), ExitCode::WrongUse);
    QStringList known;
    for (const QCommandLineOption& option :
         commonOptions() + (command ? command->options : QList<QCommandLineOption>())) {
        for (const QString& name : option.names())
            known.append(dashed(name));
    }
    const QString wrong = dashed(unknown.constFirst());
    throw Failure(QStringLiteral("There is no option \"%1\".").arg(wrong) +
                      didYouMean(wrong, known),
                  ExitCode::WrongUse);
}

const Command& findCommand(const QString& name) {
    const auto found = std::find_if(commands().begin(), commands().end(),
                                    [&](const Command& command) { return command.name == name; });
    if (found != commands().end())
        return *found;
    QStringList names;
    for (const Command& command : commands())
        names.append(command.name);
    const QString near = didYouMean(name, names);
    throw Failure(QStringLiteral("There is no command \"%1\".").arg(name) +
                      (near.isEmpty()
                           ? QStringLiteral(" There is: %1.").arg(names.join(QStringLiteral(", ")))
                           : near),
                  ExitCode::WrongUse);
}

/// A command line, taken apart.
class Invocation {
public:
    explicit Invocation(const QStringList& arguments) {
        const QStringList shielded = Arguments::shielded(arguments);
        QCommandLineParser first;
        first.setOptionsAfterPositionalArgumentsMode(
            QCommandLineParser::ParseAsPositionalArguments);
        prepare(first, nullptr);
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

    /// What is printed in place of running; empty when a command is to run.
    QString answer() const {
        if (m_parser.isSet(QStringLiteral("version")))
            return QStringLiteral("spanlet %1\n").arg(QCoreApplication::applicationVersion());
        if (m_parser.isSet(QStringLiteral("help")))
            return m_command ? helpText(m_parser, *m_command) : overview();
        return {};
    }

    /// What the command works with, once nothing is wrong with its use.
    Context context(Screen& screen) const {
        if (!m_command)
            throw Failure(QStringLiteral("A command is needed.\n\n") + overview(),
                          ExitCode::WrongUse);
        checkOperands();
        QString error;
        const session::CameraSource source = session::cameraSource(m_parser, error);
        if (!error.isEmpty())
            throw Failure(error, ExitCode::WrongUse);
        return {Arguments(m_parser), screen, source, wantsJson()};
    }

    Report run(Context& context) const { return m_command->run(context); }

    bool wantsJson() const { return m_parser.isSet(QStringLiteral("json")); }

    Verbosity verbosity() const {
        int count = 0;
        for (const QString& name : m_parser.optionNames())
            count += name == QLatin1String("v") || name == QLatin1String("verbose") ? 1 : 0;
        return static_cast<Verbosity>(std::min(count, 2));
    }

private:
    void checkOperands() const {
        const QStringList operands = Arguments(m_parser).operands();
        if (operands.size() > m_command->mostOperands)
            throw Failure(QStringLiteral("Unexpected argument \"%1\".")
                              .arg(operands[m_command->mostOperands]),
                          ExitCode::WrongUse);
        if (operands.size() < m_command->fewestOperands)
            throw Failure(
                QStringLiteral("Usage: spanlet %1 %2").arg(m_command->name, m_command->operands),
                ExitCode::WrongUse);
    }

    const Command* m_command = nullptr;
    QCommandLineParser m_parser;
};

void printDocument(Screen& screen, const QJsonObject& document) {
    screen.print(QString::fromUtf8(QJsonDocument(document).toJson()));
}

int run(const Invocation& invocation, Screen& screen) {
    const QString answer = invocation.answer();
    if (!answer.isEmpty()) {
        screen.print(answer);
        return 0;
    }
    const LogOutput log(screen, invocation.verbosity());
    Context context = invocation.context(screen);
    const Report report = invocation.run(context);
    if (invocation.wantsJson())
        printDocument(screen, report.document);
    else
        screen.print(report.text);
    return static_cast<int>(report.isSuccess ? ExitCode::Success : ExitCode::Failed);
}

int tell(Screen& screen, const Failure& failure, bool wantsJson) {
    const QString message = QString::fromUtf8(failure.what());
    screen.message(QStringLiteral("spanlet: ") + message);
    if (wantsJson)
        printDocument(screen, {{QStringLiteral("error"), message}});
    if (failure.code() == ExitCode::WrongUse)
        screen.message(QStringLiteral("Try \"spanlet --help\"."));
    return static_cast<int>(failure.code());
}

} // namespace

int runProgram(const QStringList& arguments) {
    Screen screen;
    int code = 0;
    try {
        code = run(Invocation(arguments), screen);
    } catch (const Failure& failure) {
        code = tell(screen, failure, arguments.contains(QStringLiteral("--json")));
    }
    const bool isWritten = screen.flush();
    return code == 0 && !isWritten ? static_cast<int>(ExitCode::Failed) : code;
}

} // namespace cli
