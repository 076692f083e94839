// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <QCommandLineOption>
#include <QList>
#include <QString>

class QCommandLineParser;

namespace session {

/// The cameras that a program works with.
struct CameraSource {
    /// File of a configuration or scenario, or the ":name" of an embedded one: ":genicam" for real
    /// cameras. Empty for the simulated cameras that the SDK has built in.
    QString configuration;
};

/// The options --config and --cameras of a command line.
QList<QCommandLineOption> cameraOptions();

/// The cameras that a parsed command line with these options names, or, without either option, the
/// environment variable SPANLET_CAMERAS, which has the values of --cameras, or the first
/// configuration file that names some (see CameraPreference.h). Sets \p error only when one of
/// these is wrong: to the reason, for a person.
CameraSource cameraSource(const QCommandLineParser& parser, QString& error);

} // namespace session
