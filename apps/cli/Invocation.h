// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "cli/Command.h"
#include "cli/LogOutput.h"

#include <QCommandLineParser>
#include <QString>
#include <QStringList>

namespace cli {

/// A parsed command line of the program. Wrong use throws a Failure.
class Invocation {
public:
    /// \p arguments begin with the program's name.
    explicit Invocation(const QStringList& arguments);

    /// The command line that explains the command of \p arguments, which may be wrong; the whole
    /// program where they name no command.
    static QString helpLine(const QStringList& arguments);

    /// The text of --help, --version or the command "help"; empty when a command is to run.
    QString answer() const;
    /// Checks the operands and makes the context of the command.
    Context context(Terminal& terminal, Interruption& interruption) const;
    Report run(Context& context) const { return m_command->run(context); }

    /// Whether the output is one JSON document.
    bool wantsJson() const;
    Verbosity verbosity() const;

private:
    /// The text of the command "help".
    QString explanation() const;
    void checkOperands() const;

    const Command* m_command = nullptr;
    QCommandLineParser m_parser;
};

} // namespace cli
