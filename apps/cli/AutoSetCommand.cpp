// SPDX-License-Identifier: BSD-3-Clause
#include "cli/AutoSetReport.h"
#include "cli/BenchmarkOptions.h"
#include "cli/BenchmarkTable.h"
#include "cli/CameraLimit.h"
#include "cli/Commands.h"
#include "engine/CameraHandler.h"
#include "engine/SafetyMargins.h"

#include <algorithm>
#include <cmath>

namespace cli {

namespace {

constexpr QLatin1String interfaceOption("interface");
constexpr QLatin1String maxBandwidthOption("max-bandwidth");

struct Margins {
    double interfacePercent;
    double cameraPercent;
};

/// The options of one run.
struct Task {
    const HostInterface& interface;
    /// The camera to set; null when the interface is divided.
    std::shared_ptr<CameraHandler> camera;
    Margins margins;
    bool adjustsPacketSize;
};

void wrongUse(const QString& message) {
    throw Failure(message, ExitCode::WrongUse);
}

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

/// Finds wrong use before cameras are opened.
void checkOptions(const Arguments& arguments) {
    const bool hasCamera = arguments.has(QStringLiteral("camera"));
    if (hasCamera == arguments.has(interfaceOption))
        wrongUse(QStringLiteral("Either --interface or --camera is needed."));
    for (const QString& option : {QStringLiteral("lock"), QString(maxBandwidthOption),
                                  QStringLiteral("interface-margin")}) {
        if (hasCamera && arguments.has(option))
            wrongUse(QStringLiteral("--%1 goes with --interface only.").arg(option));
    }
    maxBandwidthMegabytes(arguments);
    marginsFor(arguments, OrvTransportLayerTypeGEV);
}

const HostInterface& interfaceOf(const Cameras& cameras,
                                 const std::shared_ptr<CameraHandler>& camera) {
    const auto& all = cameras.interfaces();
    return *std::find_if(all.begin(), all.end(), [&](const HostInterface& interface) {
        const CameraList& list = interface.cameras;
        return std::find(list.begin(), list.end(), camera) != list.end();
    });
}

Task makeTask(Cameras& cameras, const Arguments& arguments) {
    std::shared_ptr<CameraHandler> camera;
    if (arguments.has(QStringLiteral("camera"))) {
        camera = cameras.findCamera(arguments.value(QStringLiteral("camera")));
        requireOpened(*camera);
    }
    const HostInterface& interface = camera
                                         ? interfaceOf(cameras, camera)
                                         : cameras.findInterface(arguments.value(interfaceOption));
    const OrvTransportLayerType type =
        cameras.controller().getInterfaceType(interface.name.toStdString());
    if (type != OrvTransportLayerTypeGEV && type != OrvTransportLayerTypeU3V)
        throw Failure(
            QStringLiteral("Auto Set is not supported for the interface %1.").arg(interface.name));
    return {interface, camera, marginsFor(arguments, type),
            arguments.has(QStringLiteral("adjust-packet-size"))};
}

/// Locks cameras and sets the maximum. Fails for an interface of unknown speed, where Auto Set
/// would set every camera to its minimum.
void prepareInterface(Cameras& cameras, const Task& task, const Arguments& arguments) {
    for (const QString& locked : arguments.values(QStringLiteral("lock"))) {
        for (const auto& camera : findCameras(task.interface.cameras, locked))
            camera->setLocked(true);
    }
    const std::string key = task.interface.name.toStdString();
    if (arguments.has(maxBandwidthOption)) {
        constexpr double bitsPerMegabyte = 8e6;
        const double bits = maxBandwidthMegabytes(arguments) * bitsPerMegabyte;
        cameras.controller().setMaxBandwidth(key, static_cast<std::uint64_t>(std::llround(bits)));
    }
    if (!task.camera && cameras.controller().getInterfaceSpeed(key) == 0)
        throw Failure(QStringLiteral("The speed of %1 is not known; give it by --max-bandwidth.")
                          .arg(task.interface.name));
}

void autoSet(Cameras& cameras, const Task& task) {
    const double cameraMargin = task.margins.cameraPercent / 100;
    if (task.camera) {
        task.camera->adjustPacketSize(task.adjustsPacketSize);
        autoSetCamera(*task.camera, cameraMargin);
    } else {
        cameras.controller().autoSetInterface(task.interface.name.toStdString(),
                                              task.interface.index, task.adjustsPacketSize,
                                              task.margins.interfacePercent / 100, cameraMargin);
    }
}

CameraList affected(const Task& task) {
    return task.camera ? CameraList{task.camera} : task.interface.cameras;
}

QJsonObject runTask(Cameras& cameras, const Task& task) {
    const CameraList list = affected(task);
    const QJsonArray before = bandwidthsOf(list);
    for (const auto& camera : list) {
        if (camera->isOpened() && !camera->isLocked())
            camera->switchBandwidthLimitOn();
    }
    autoSet(cameras, task);
    const auto bitsPerSecond = static_cast<double>(
        cameras.controller().getInterfaceSpeed(task.interface.name.toStdString()));
    cameras.warnOfExcess(task.interface, task.margins.interfacePercent);
    return {
        {QStringLiteral("interface"), task.interface.name},
        {QStringLiteral("bitsPerSecond"), bitsPerSecond},
        {QStringLiteral("bandwidthBytesPerSecond"), sumOfLimits(task.interface.cameras)},
        {QStringLiteral("interfaceMarginPercent"), task.margins.interfacePercent},
        {QStringLiteral("cameraMarginPercent"), task.margins.cameraPercent},
        {QStringLiteral("cameras"), describeAutoSet(list, before)},
    };
}

/// Auto Set itself is not interrupted: a camera would keep a value that the search was trying.
Report runAutoSet(Context& context) {
    const Arguments& arguments = context.arguments;
    checkOptions(arguments);
    BenchmarkPlan plan;
    plan.seconds = benchmarkSeconds(arguments, QStringLiteral("benchmark"), 0);
    Cameras& cameras = context.openCameras();
    const Task task = makeTask(cameras, arguments);
    prepareInterface(cameras, task, arguments);

    QJsonObject before;
    if (plan.seconds > 0)
        before = runBenchmark(cameras, task.interface, plan, context.interruption);
    if (context.interruption.isRequested())
        throw Failure(QStringLiteral("Interrupted before Auto Set: no camera was changed."));
    const QJsonObject result = runTask(cameras, task);
    Report report{autoSetText(result), result, isAutoSet(result)};
    report.hasHeadings = true;
    if (plan.seconds > 0) {
        const QJsonObject after = runBenchmark(cameras, task.interface, plan, context.interruption);
        report.document[QStringLiteral("benchmarkBefore")] = before;
        report.document[QStringLiteral("benchmarkAfter")] = after;
        report.text = QStringLiteral("Before: %1\n%2\nAfter: %3")
                          .arg(benchmarkText(before), report.text, benchmarkText(after));
        report.isSuccess = report.isSuccess && hasMeasuredAll(after);
    }
    return report;
}

} // namespace

Command autoSetCommand() {
    const auto number = QStringLiteral("number");
    Command command;
    command.name = QStringLiteral("autoset");
    command.summary = QStringLiteral("Divide the bandwidth of an interface among its cameras, or "
                                     "give one camera the bandwidth that it needs.");
    command.options = {
        {interfaceOption, QStringLiteral("Name or ID of the interface to divide."),
         QStringLiteral("interface")},
        {QStringLiteral("camera"),
         QStringLiteral("ID, name or serial number of the one camera to set."),
         QStringLiteral("camera")},
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
        {QStringLiteral("adjust-packet-size"),
         QStringLiteral("Let GigE cameras negotiate their largest packet size before.")},
        {QStringLiteral("benchmark"),
         QStringLiteral("Benchmark the interface before and after, each time for so many "
                        "seconds."),
         QStringLiteral("seconds")},
    };
    command.examples = QStringList{
        QStringLiteral("autoset --interface GEV-enp3s0 --lock GEV-21017,GEV-20844 "
                       "--max-bandwidth 110"),
        QStringLiteral("autoset --camera GEV-21018 --camera-margin 10"),
        QStringLiteral("autoset --config :oversubscribed --interface GEV-enp3s0 --benchmark 2")};
    command.run = runAutoSet;
    return command;
}

} // namespace cli
