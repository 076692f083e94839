// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "cli/Command.h"
#include "cli/LogOutput.h"

#include <QCommandLineParser>
#include <QString>
#include <QStringList>

namespace cli {

/// A command line of the program, taken apart. What is wrong with it is thrown as a Failure.
class Invocation {
public:
    /// \p arguments begin with the program's name.
    explicit Invocation(const QStringList& arguments);

    /// What is printed in place of running; empty when a command is to run.
    QString answer() const;
    /// What the command works with, once nothing is wrong with its use.
    Context context(Screen& screen, Interruption& interruption) const;
    Report run(Context& context) const { return m_command->run(context); }

    /// Whether only one document is to be printed.
    bool wantsJson() const;
    Verbosity verbosity() const;

private:
    void checkOperands() const;

    const Command* m_command = nullptr;
    QCommandLineParser m_parser;
};

} // namespace cli
