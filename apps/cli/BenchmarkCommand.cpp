// SPDX-License-Identifier: BSD-3-Clause
#include "cli/Benchmark.h"
#include "cli/Commands.h"

namespace cli {

namespace {

Report runBenchmarkCommand(Context& context) {
    const Arguments& arguments = context.arguments;
    const BenchmarkPlan plan = benchmarkPlan(arguments, 10);
    Cameras& cameras = context.openCameras();
    const HostInterface& interface = chosenInterface(cameras, arguments);
    cameras.warnOfExcess(interface);
    const QJsonObject result = runBenchmark(cameras, interface, plan, context.interruption);
    const bool hasFailed = arguments.has(QStringLiteral("fail-on-loss")) && hasLoss(result);
    return {benchmarkText(result), result, hasMeasuredAll(result) && !hasFailed};
}

} // namespace

Command benchmarkCommand() {
    Command command;
    command.name = QStringLiteral("benchmark");
    command.summary = QStringLiteral(
        "Stream from all cameras of an interface and count what arrives. Frame rates are averages. "
        "Ctrl+C ends it early and prints what was counted so far.");
    command.options = benchmarkOptions(QStringLiteral("10"));
    command.options += QCommandLineOption(
        QStringLiteral("fail-on-loss"),
        QStringLiteral("Exit with 1 when a frame is lost or arrives incomplete."));
    command.examples = QStringList{
        QStringLiteral("benchmark --interface eth0 --seconds 30"),
        QStringLiteral("benchmark --config :oversubscribed --interface GEV-enp3s0 --fail-on-loss")};
    command.run = runBenchmarkCommand;
    return command;
}

} // namespace cli
