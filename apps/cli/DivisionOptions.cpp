// SPDX-License-Identifier: BSD-3-Clause
#include "cli/DivisionOptions.h"

#include "cli/Arguments.h"
#include "cli/Calibration.h"
#include "cli/Failure.h"
#include "cli/SavedCapacities.h"
#include "cli/Terminal.h"
#include "engine/CameraHandler.h"
#include "engine/SafetyMargins.h"

#include <cmath>

namespace cli {

namespace {

const QLatin1String maxBandwidthOption("max-bandwidth");

double percent(const Arguments& arguments, const char* option, int absent) {
    return arguments.number(QLatin1String(option), {0, 50, static_cast<double>(absent)});
}

double maxBandwidthMegabytes(const Arguments& arguments) {
    return arguments.number(maxBandwidthOption, {0.001, 100000, 0});
}

Margins marginsFor(const Arguments& arguments, OrvTransportLayerType type) {
    const auto recommended = recommendedMargins(type);
    return {percent(arguments, "interface-margin", recommended.interfacePercent),
            percent(arguments, "camera-margin", recommended.cameraPercent)};
}

OrvTransportLayerType typeOf(Cameras& cameras, const HostInterface& interface) {
    return cameras.controller().getInterfaceType(interface.name.toStdString());
}

void setSpeed(Cameras& cameras, const HostInterface& interface, double bytesPerSecond) {
    cameras.controller().setMaxBandwidth(
        interface.name.toStdString(), static_cast<std::uint64_t>(std::llround(bytesPerSecond * 8)));
}

void useCapacity(Cameras& cameras, const HostInterface& interface, const SavedCapacity& capacity,
                 Terminal& terminal) {
    const auto megabytes = [](double bytes) {
        return QString::number(bytes / 1e6, 'f', 1);
    };
    const auto speed = cameras.controller().getInterfaceSpeed(interface.name.toStdString());
    const QString measured = QStringLiteral("spanlet: %1: The capacity of %2 MB/s measured on %3 ")
                                 .arg(interface.name, megabytes(capacity.bytesPerSecond),
                                      capacity.date.toString(Qt::ISODate));
    if (speed != capacity.bitsPerSecond) {
        terminal.message(measured +
                         QStringLiteral("is not used: the link had %1 MB/s then, and has %2 now. "
                                        "Repeat \"spanlet calibrate --save\".")
                             .arg(megabytes(static_cast<double>(capacity.bitsPerSecond) / 8),
                                  megabytes(static_cast<double>(speed) / 8)));
        return;
    }
    terminal.message(measured +
                     QStringLiteral("is taken for its speed; \"spanlet calibrate --forget "
                                    "--interface '%1'\" ends that.")
                         .arg(interface.id.isEmpty() ? interface.name : interface.id));
    setSpeed(cameras, interface, capacity.bytesPerSecond);
}

} // namespace

QList<QCommandLineOption> divisionOptions() {
    const auto number = QStringLiteral("number");
    return {
        {QStringLiteral("interface-margin"),
         QStringLiteral("Percent of the interface to leave free, 0 to 50; 10 on GigE and 30 on USB "
                        "by default."),
         number},
        {QStringLiteral("camera-margin"),
         QStringLiteral("Percent to add to what a camera needs, 0 to 50; 5 by default."), number},
        {QStringLiteral("lock"),
         QStringLiteral("Cameras that keep their bandwidth, separated by commas; may be given "
                        "several times."),
         QStringLiteral("cameras")},
        {maxBandwidthOption,
         QStringLiteral("MB/s that the interface carries, in place of its link speed."), number},
    };
}

void checkDivisionOptions(const Arguments& arguments) {
    if (arguments.has(maxBandwidthOption) && areSeveralInterfacesWanted(arguments))
        throw Failure(QStringLiteral("--max-bandwidth goes with one --interface only."),
                      ExitCode::WrongUse);
    maxBandwidthMegabytes(arguments);
    marginsFor(arguments, OrvTransportLayerTypeGEV);
}

Margins marginsFor(const Arguments& arguments, Cameras& cameras, const HostInterface& interface) {
    return marginsFor(arguments, typeOf(cameras, interface));
}

void lockCameras(const ChosenInterfaces& chosen, const Arguments& arguments) {
    const CameraList all = chosen.cameras();
    for (const QString& locked : arguments.values(QStringLiteral("lock"))) {
        for (const auto& camera : findCameras(all, locked))
            camera->setLocked(true);
    }
}

void setMaxBandwidth(Cameras& cameras, const ChosenInterfaces& chosen, const Arguments& arguments,
                     Terminal& terminal) {
    if (arguments.has(maxBandwidthOption)) {
        setSpeed(cameras, *chosen.interfaces.front(), maxBandwidthMegabytes(arguments) * 1e6);
        return;
    }
    const SavedCapacities capacities(cameras.areSimulated());
    for (const HostInterface* interface : chosen.interfaces) {
        if (const auto capacity = capacities.find(linkKey(cameras, *interface)))
            useCapacity(cameras, *interface, *capacity, terminal);
    }
}

// With an unknown speed Auto Set would set every camera to its minimum.
QString divisionObstacle(Cameras& cameras, const HostInterface& interface, bool needsSpeed) {
    const OrvTransportLayerType type = typeOf(cameras, interface);
    if (type != OrvTransportLayerTypeGEV && type != OrvTransportLayerTypeU3V)
        return QStringLiteral("%1 is neither a GigE Vision nor a USB3 Vision interface; only these "
                              "can be divided.")
            .arg(interface.name);
    if (needsSpeed && cameras.controller().getInterfaceSpeed(interface.name.toStdString()) == 0)
        return QStringLiteral("The speed of %1 is not known; give it by --max-bandwidth.")
            .arg(interface.name);
    return {};
}

} // namespace cli
