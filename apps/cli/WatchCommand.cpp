// SPDX-License-Identifier: BSD-3-Clause
#include "cli/BenchmarkOptions.h"
#include "cli/BenchmarkTable.h"
#include "cli/Commands.h"
#include "cli/LiveFigures.h"
#include "cli/MetricsOption.h"
#include "cli/Terminal.h"
#include "cli/platform/Keyboard.h"
#include "engine/CameraHandler.h"
#include "losses/CameraAdapter.h"

#include <QHash>

#include <optional>
#include <string>

namespace cli {

namespace {

/// Names of the network adapters through which the cameras of each interface stream.
QHash<QString, std::string> adaptersOf(const ChosenInterfaces& chosen) {
    QHash<QString, std::string> adapters;
    for (const HostInterface* interface : chosen.interfaces)
        if (!interface->cameras.empty())
            adapters[interface->name] =
                adapterOf(*interface->cameras.front()->getFeatureController());
    return adapters;
}

Report runWatch(Context& context) {
    const Arguments& arguments = context.arguments;
    const BenchmarkPlan plan = benchmarkPlan(arguments, 0);
    QHash<QString, std::string> adapters;
    const auto metrics = metricsExporter(
        context, [&adapters](const QString& interface) { return adapters.value(interface); });
    Cameras& cameras = context.openCameras();
    const ChosenInterfaces chosen = benchmarkedInterfaces(cameras, arguments);
    if (metrics && !cameras.areSimulated())
        adapters = adaptersOf(chosen);
    const BenchmarkProgress shown = makeExportedProgress(context, metrics.get(), plan.seconds);
    std::optional<Keyboard> keyboard;
    if (context.terminal.isInteractive() && !context.wantsJson)
        keyboard.emplace();
    const QJsonObject result = runBenchmark(
        cameras, chosen, plan, context.interruption,
        [&](const QJsonObject& interval) {
            if (metrics)
                metrics->update(interval);
            return shown(interval);
        },
        [&] { return !keyboard || obeyKeys(*keyboard, context.terminal); });
    keyboard.reset();
    context.terminal.clear();
    Report report{benchmarkText(result, context.terminal.lineWidth(), explainsAll(arguments)),
                  result, hasMeasuredAll(result)};
    report.hasHeadings = true;
    report.isLine = true;
    return report;
}

} // namespace

Command watchCommand() {
    Command command;
    command.name = QStringLiteral("watch");
    command.summary = QStringLiteral(
        "Stream from all cameras of an interface and show their figures as they change, until "
        "Ctrl+C or for a time. Rates are averages since the line before, counts are those since "
        "the start; rates at the end are averages of the whole time. On a terminal the lines are "
        "redrawn in place, the arrow keys and Page Up/Down scroll them, and q ends. With --json, "
        "each line is a document, the last one the result.");
    command.options =
        benchmarkOptions(
            QStringLiteral("endless"),
            QStringLiteral("Seconds between two readings of the figures, 0.5 by default.")) +
        QList<QCommandLineOption>{metricsOption()};
    command.examples =
        QStringList{QStringLiteral("watch --all --seconds 3"),
                    QStringLiteral("watch --interface GEV-enp3s0 --seconds 4 --interval 2")};
    command.run = runWatch;
    return command;
}

} // namespace cli
