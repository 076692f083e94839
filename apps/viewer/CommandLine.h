// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "session/CameraSource.h"

#include <QString>
#include <QStringList>

namespace viewer {

/// What the viewer is asked to do on its command line.
struct CommandLine {
    session::CameraSource cameras;
    bool opensSpanlet = false;
    bool isDark = false;
    /// Length of the benchmark of each interface, in seconds; 0 for none.
    int benchmarkSeconds = 0;
    /// Whether Auto Set runs on each interface before the benchmark.
    bool autoSets = false;
    /// File for a picture of Spanlet's dialog; empty for none.
    QString pictureFile;
    /// File for a picture of the first camera's features; empty for none.
    QString featurePictureFile;
    /// File for a picture of the viewer's own window; empty for none.
    QString windowPictureFile;

    /// Text to be printed in place of running: help or version.
    QString answer;
    /// What is wrong with the arguments; empty when nothing is.
    QString error;

    /// Whether the program operates Spanlet's dialog itself.
    bool operatesSpanlet() const {
        return autoSets || benchmarkSeconds > 0 || !pictureFile.isEmpty() ||
               !featurePictureFile.isEmpty();
    }
    /// Whether the program works without a person, and ends afterwards.
    bool isAutomated() const { return operatesSpanlet() || !windowPictureFile.isEmpty(); }
};

/// \p arguments begin with the program's name. Needs an application object.
CommandLine parseCommandLine(const QStringList& arguments);

} // namespace viewer
