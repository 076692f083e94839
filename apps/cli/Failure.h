// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <QString>
#include <QStringList>

#include <stdexcept>

namespace cli {

enum class ExitCode : int { Success = 0, Failed = 1, WrongUse = 2 };

/// Ends a command with a message for the user. Caught in runProgram().
class Failure : public std::runtime_error {
public:
    explicit Failure(const QString& message, ExitCode code = ExitCode::Failed)
        : std::runtime_error(message.toStdString()), m_code(code) {}

    ExitCode code() const { return m_code; }

private:
    ExitCode m_code;
};

/// " There is: a, b." or " There is none.", to append to the message that a name is unknown.
inline QString thereIs(const QStringList& names) {
    return names.isEmpty() ? QStringLiteral(" There is none.")
                           : QStringLiteral(" There is: %1.").arg(names.join(QStringLiteral(", ")));
}

} // namespace cli
