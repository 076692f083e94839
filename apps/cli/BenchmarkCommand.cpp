// SPDX-License-Identifier: BSD-3-Clause
#include "cli/BenchmarkOptions.h"
#include "cli/BenchmarkTable.h"
#include "cli/Commands.h"
#include "cli/Terminal.h"

namespace cli {

namespace {

Report runBenchmarkCommand(Context& context) {
    const Arguments& arguments = context.arguments;
    const BenchmarkPlan plan = benchmarkPlan(arguments, 10);
    const bool hasIntervals = arguments.has(QStringLiteral("interval"));
    if (hasIntervals && !context.wantsJson)
        throw Failure(QStringLiteral("--interval goes with --json; \"spanlet watch\" prints "
                                     "figures as they change."),
                      ExitCode::WrongUse);
    Cameras& cameras = context.openCameras();
    const ChosenInterfaces chosen = benchmarkedInterfaces(cameras, arguments);
    const QJsonObject result =
        runBenchmark(cameras, chosen, plan, context.interruption,
                     hasIntervals ? makeJsonProgress(context.terminal) : BenchmarkProgress());
    const bool hasFailed = arguments.has(QStringLiteral("fail-on-loss")) && hasLoss(result);
    Report report{benchmarkText(result, context.terminal.lineWidth(), explainsAll(arguments)),
                  result, hasMeasuredAll(result) && !hasFailed};
    report.hasHeadings = true;
    report.isLine = hasIntervals;
    return report;
}

} // namespace

Command benchmarkCommand() {
    Command command;
    command.name = QStringLiteral("benchmark");
    command.summary = QStringLiteral(
        "Stream from all cameras of an interface and count what arrives. Rates are averages of the "
        "whole time; MB/s are those of the images. Ctrl+C ends it early and prints what was "
        "counted so far.");
    command.options = benchmarkOptions(
        QStringLiteral("10"),
        QStringLiteral("With --json: print a line with the figures so far at each such interval, "
                       "and the result as the last line."));
    command.options += QCommandLineOption(
        QStringLiteral("fail-on-loss"),
        QStringLiteral(
            "Exit with 1 when a frame is lost or arrives incomplete, or a camera sends none."));
    command.examples = QStringList{
        QStringLiteral("benchmark --interface GEV-enp3s0 --seconds 2 --fail-on-loss"),
        QStringLiteral("benchmark --all --seconds 2 --json --interval 1"),
        QStringLiteral("benchmark --config :oversubscribed --interface GEV-enp3s0 --seconds 2")};
    command.run = runBenchmarkCommand;
    return command;
}

} // namespace cli
