// SPDX-License-Identifier: BSD-3-Clause
#include "cli/DivisionOptions.h"

#include "cli/Arguments.h"
#include "cli/Failure.h"
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

void setMaxBandwidth(Cameras& cameras, const ChosenInterfaces& chosen, const Arguments& arguments) {
    if (!arguments.has(maxBandwidthOption))
        return;
    constexpr double bitsPerMegabyte = 8e6;
    const double bits = maxBandwidthMegabytes(arguments) * bitsPerMegabyte;
    cameras.controller().setMaxBandwidth(chosen.interfaces.front()->name.toStdString(),
                                         static_cast<std::uint64_t>(std::llround(bits)));
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
