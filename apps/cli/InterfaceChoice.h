// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "cli/Cameras.h"

#include <QCommandLineOption>
#include <QList>
#include <QString>

#include <vector>

namespace cli {

class Arguments;

/// The interfaces that a command works on.
struct ChosenInterfaces {
    std::vector<const HostInterface*> interfaces;
    /// Whether the document has a list of interfaces, even of one.
    bool isList = false;

    /// Separated by commas.
    QString names() const;
    /// Of all the interfaces.
    CameraList cameras() const;
};

/// The options --interface, which may be given several times, and --all.
QList<QCommandLineOption> interfaceOptions(const QString& interfaceHelp, const QString& allHelp);
/// Throws a Failure when both are given.
void checkInterfaceOptions(const Arguments& arguments);
/// Whether the command works on a list of interfaces, even of one.
bool areSeveralInterfacesWanted(const Arguments& arguments);
/// The interfaces that --interface names, each once, all with --all, or the only one. Throws a
/// Failure when there is none, a name is unknown, or neither option is given and there are several.
ChosenInterfaces chosenInterfaces(const Cameras& cameras, const Arguments& arguments);

} // namespace cli
