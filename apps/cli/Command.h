// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "cli/Arguments.h"
#include "session/CameraSource.h"

#include <QCommandLineOption>
#include <QJsonObject>
#include <QList>
#include <QString>
#include <QStringList>

#include <memory>
#include <stdexcept>

namespace cli {

class Cameras;
class Interruption;
class Screen;

enum class ExitCode : int { Success = 0, Failed = 1, WrongUse = 2 };

/// Ends a command with a message for a person; caught where the command was started.
class Failure : public std::runtime_error {
public:
    explicit Failure(const QString& message, ExitCode code = ExitCode::Failed)
        : std::runtime_error(message.toStdString()), m_code(code) {}

    ExitCode code() const { return m_code; }

private:
    ExitCode m_code;
};

/// What a command has found out: lines for a person, and the same for a program.
struct Report {
    QString text;
    QJsonObject document;
    bool isSuccess = true;
};

/// What a command works with.
class Context {
public:
    Context(const Arguments& given, Screen& output, Interruption& ending,
            session::CameraSource source, bool json);
    ~Context();

    /// Starts the camera SDK and opens its cameras, once. They stay open until the context ends,
    /// after the report is printed: it may take a camera that has gone some seconds to be closed.
    Cameras& openCameras();
    /// Fails when the program is to end. For between two steps of a command that has no result yet.
    void checkInterruption() const;

    const Arguments arguments;
    Screen& screen;
    Interruption& interruption;
    /// Whether only one document is to be printed.
    const bool wantsJson;

private:
    const session::CameraSource m_source;
    std::unique_ptr<Cameras> m_cameras;
};

/// A subcommand of the program.
struct Command {
    QString name;
    /// One line.
    QString summary;
    /// Synopsis of what is neither option nor value of one, and how many of them there may be.
    QString operands;
    int fewestOperands = 0;
    int mostOperands = 0;
    QList<QCommandLineOption> options;
    /// Command lines, without the program's name.
    QStringList examples;
    Report (*run)(Context& context) = nullptr;
};

} // namespace cli
