// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "cli/InterfaceChoice.h"

#include <QCommandLineOption>
#include <QList>
#include <QString>

namespace cli {

class Arguments;
class Terminal;

/// Percentage of an interface that stays free, and percentage added to what a camera needs.
struct Margins {
    double interfacePercent;
    double cameraPercent;
};

/// The options of commands that divide interfaces: --interface-margin, --camera-margin, --lock and
/// --max-bandwidth.
QList<QCommandLineOption> divisionOptions();
/// Finds wrong use of them before cameras are opened. Throws a Failure.
void checkDivisionOptions(const Arguments& arguments);
/// The margins that are given, else those that are recommended for the type of the interface.
Margins marginsFor(const Arguments& arguments, Cameras& cameras, const HostInterface& interface);
/// Locks the cameras of the interfaces that --lock names.
void lockCameras(const ChosenInterfaces& chosen, const Arguments& arguments);
/// Sets the speed of the only interface where --max-bandwidth is given, else that of each interface
/// for which SavedCapacities has one; tells on \p terminal which. A capacity of a link that had
/// another speed then is not used, and a message says so.
void setMaxBandwidth(Cameras& cameras, const ChosenInterfaces& chosen, const Arguments& arguments,
                     Terminal& terminal);
/// Why an interface cannot be divided; empty when it can. \p needsSpeed: an unknown speed is a
/// reason.
QString divisionObstacle(Cameras& cameras, const HostInterface& interface, bool needsSpeed);

} // namespace cli
