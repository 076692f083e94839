// SPDX-License-Identifier: BSD-3-Clause
#include "cli/AutoSetReport.h"
#include "cli/AutoSetTask.h"
#include "cli/BenchmarkOptions.h"
#include "cli/BenchmarkTable.h"
#include "cli/Commands.h"
#include "cli/DivisionOptions.h"
#include "engine/CameraHandler.h"

#include <algorithm>
#include <vector>

namespace cli {

namespace {

const QLatin1String interfaceOption("interface");
const QLatin1String cameraOption("camera");

void wrongUse(const QString& message) {
    throw Failure(message, ExitCode::WrongUse);
}

/// Finds wrong use before cameras are opened.
void checkOptions(const Arguments& arguments) {
    const bool hasCamera = arguments.has(cameraOption);
    checkInterfaceOptions(arguments);
    if (hasCamera == (arguments.has(interfaceOption) || arguments.has(QStringLiteral("all"))))
        wrongUse(QStringLiteral("Either --interface, --all or --camera is needed."));
    for (const QString& option : {QStringLiteral("lock"), QStringLiteral("max-bandwidth"),
                                  QStringLiteral("interface-margin")}) {
        if (hasCamera && arguments.has(option))
            wrongUse(QStringLiteral("--%1 goes with --interface only.").arg(option));
    }
    checkDivisionOptions(arguments);
}

const HostInterface& interfaceOf(const Cameras& cameras,
                                 const std::shared_ptr<CameraHandler>& camera) {
    const auto& all = cameras.interfaces();
    return *std::find_if(all.begin(), all.end(), [&](const HostInterface& interface) {
        const CameraList& list = interface.cameras;
        return std::find(list.begin(), list.end(), camera) != list.end();
    });
}

ChosenInterfaces chooseInterfaces(const Cameras& cameras,
                                  const std::shared_ptr<CameraHandler>& camera,
                                  const Arguments& arguments) {
    if (camera)
        return {{&interfaceOf(cameras, camera)}, false};
    return chosenInterfaces(cameras, arguments);
}

std::shared_ptr<CameraHandler> chosenCamera(const Cameras& cameras, const Arguments& arguments) {
    if (!arguments.has(cameraOption))
        return {};
    const auto camera = cameras.findCamera(arguments.value(cameraOption));
    requireOpened(*camera);
    return camera;
}

Report makeReport(const QJsonArray& results, bool isList) {
    Report report;
    report.document =
        isList ? QJsonObject{{QStringLiteral("interfaces"), results}} : results.first().toObject();
    QStringList texts;
    for (const QJsonValue& result : results) {
        texts.append(autoSetText(result.toObject()));
        report.isSuccess = report.isSuccess && isAutoSet(result.toObject());
    }
    report.text = texts.join(QLatin1Char('\n'));
    report.hasHeadings = true;
    return report;
}

/// Auto Set itself is not interrupted: a camera would keep a value that the search was trying.
Report runAutoSetCommand(Context& context) {
    const Arguments& arguments = context.arguments;
    checkOptions(arguments);
    BenchmarkPlan plan;
    plan.seconds = benchmarkSeconds(arguments, QStringLiteral("benchmark"), 0);
    Cameras& cameras = context.openCameras();
    const std::shared_ptr<CameraHandler> camera = chosenCamera(cameras, arguments);
    const ChosenInterfaces chosen = chooseInterfaces(cameras, camera, arguments);
    const std::vector<AutoSetTask> tasks = autoSetTasks(cameras, chosen, camera, arguments);
    lockCameras(chosen, arguments);
    if (!camera)
        setMaxBandwidth(cameras, chosen, arguments, context.terminal);

    QJsonObject before;
    if (plan.seconds > 0)
        before = runBenchmark(cameras, chosen, plan, context.interruption);
    if (context.interruption.isRequested())
        throw Failure(QStringLiteral("Interrupted before Auto Set: no camera was changed."));
    Report report = makeReport(runAutoSet(cameras, tasks, chosen.isList), chosen.isList);
    if (plan.seconds > 0) {
        const QJsonObject after = runBenchmark(cameras, chosen, plan, context.interruption);
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
    Command command;
    command.name = QStringLiteral("autoset");
    command.summary = QStringLiteral("Divide the bandwidth of interfaces among their cameras, or "
                                     "give one camera the bandwidth that it needs.");
    command.options = interfaceOptions(
        QStringLiteral("Name or ID of an interface to divide; may be given several times."),
        QStringLiteral("Divide all interfaces, one after the other."));
    command.options += divisionOptions();
    command.options += QList<QCommandLineOption>{
        {cameraOption, QStringLiteral("ID, name or serial number of the one camera to set."),
         QStringLiteral("camera")},
        {QStringLiteral("adjust-packet-size"),
         QStringLiteral("Let GigE cameras negotiate their largest packet size before.")},
        {QStringLiteral("benchmark"),
         QStringLiteral("Benchmark the interfaces before and after, each time for so many "
                        "seconds."),
         QStringLiteral("seconds")},
    };
    command.examples = QStringList{
        QStringLiteral("autoset --interface GEV-enp3s0 --lock GEV-21017,GEV-20844 "
                       "--max-bandwidth 110"),
        QStringLiteral("autoset --all"),
        QStringLiteral("autoset --camera GEV-21018 --camera-margin 10"),
        QStringLiteral("autoset --config :oversubscribed --interface GEV-enp3s0 --benchmark 2")};
    command.run = runAutoSetCommand;
    return command;
}

} // namespace cli
