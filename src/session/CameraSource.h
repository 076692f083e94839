// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <QCommandLineOption>
#include <QList>
#include <QString>

class QCommandLineParser;

namespace session {

/// Which cameras a program is to work with.
struct CameraSource {
    enum class Kind {
        /// What the SDK has built in: simulated cameras.
        BuiltIn,
        /// What a configuration or scenario names.
        Configured,
        /// Real GigE Vision and USB3 Vision cameras.
        GenICam
    };

    Kind kind = Kind::BuiltIn;
    /// File of a configuration or scenario, or the ":name" of an embedded one.
    QString configuration;
};

/// The options --config and --cameras, by which a command line chooses.
QList<QCommandLineOption> cameraOptions();

/// What a parsed command line with these options has chosen. \p error is left as it is unless they
/// are wrong; then it says why.
CameraSource cameraSource(const QCommandLineParser& parser, QString& error);

} // namespace session
