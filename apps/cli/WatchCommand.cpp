// SPDX-License-Identifier: BSD-3-Clause
#include "cli/BenchmarkOptions.h"
#include "cli/BenchmarkTable.h"
#include "cli/Commands.h"
#include "cli/LiveFigures.h"
#include "cli/Terminal.h"
#include "cli/platform/Keyboard.h"

#include <optional>

namespace cli {

namespace {

Report runWatch(Context& context) {
    const Arguments& arguments = context.arguments;
    const BenchmarkPlan plan = benchmarkPlan(arguments, 0);
    Cameras& cameras = context.openCameras();
    const ChosenInterfaces chosen = benchmarkedInterfaces(cameras, arguments);
    std::optional<Keyboard> keyboard;
    if (context.terminal.isInteractive() && !context.wantsJson)
        keyboard.emplace();
    const QJsonObject result =
        runBenchmark(cameras, chosen, plan, context.interruption,
                     makeLiveProgress(context.terminal, plan.seconds, context.wantsJson),
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
    command.options = benchmarkOptions(
        QStringLiteral("endless"),
        QStringLiteral("Seconds between two readings of the figures, 0.5 by default."));
    command.examples =
        QStringList{QStringLiteral("watch --all --seconds 3"),
                    QStringLiteral("watch --interface GEV-enp3s0 --seconds 4 --interval 2")};
    command.run = runWatch;
    return command;
}

} // namespace cli
