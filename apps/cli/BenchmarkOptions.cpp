// SPDX-License-Identifier: BSD-3-Clause
#include "cli/BenchmarkOptions.h"

#include "cli/Arguments.h"

#include <cmath>

namespace cli {

namespace {

const QLatin1String secondsOption("seconds");
const QLatin1String intervalOption("interval");
const QLatin1String explainOption("explain");
const QLatin1String packetSizeOption("adjust-packet-size");

constexpr NumberRange intervals{0.1, 3600, 0.5};

} // namespace

QList<QCommandLineOption> timeOptions(const QString& absentSeconds, const QString& intervalHelp) {
    return {{secondsOption, QStringLiteral("How long it takes, %1 by default.").arg(absentSeconds),
             QStringLiteral("number")},
            {intervalOption, intervalHelp, QStringLiteral("number")},
            {explainOption,
             QStringLiteral("Say where packets were lost even if no frame was, as they were sent "
                            "again. Without it, only lost frames are explained.")}};
}

QList<QCommandLineOption> benchmarkOptions(const QString& absentSeconds,
                                           const QString& intervalHelp) {
    return interfaceOptions(
               QStringLiteral("Name or ID of an interface; may be given several times, and left "
                              "out where there is only one."),
               QStringLiteral("All interfaces, at the same time.")) +
           timeOptions(absentSeconds, intervalHelp) +
           QList<QCommandLineOption>{
               {packetSizeOption,
                QStringLiteral("Let GigE cameras negotiate their largest packet size before.")}};
}

BenchmarkPlan measuredTime(const Arguments& arguments, double absentSeconds) {
    BenchmarkPlan plan;
    plan.seconds = benchmarkSeconds(arguments, secondsOption, absentSeconds);
    plan.interval =
        std::chrono::milliseconds(std::llround(arguments.number(intervalOption, intervals) * 1000));
    return plan;
}

BenchmarkPlan benchmarkPlan(const Arguments& arguments, double absentSeconds) {
    checkInterfaceOptions(arguments);
    BenchmarkPlan plan = measuredTime(arguments, absentSeconds);
    plan.adjustsPacketSize = arguments.has(packetSizeOption);
    return plan;
}

bool explainsAll(const Arguments& arguments) {
    return arguments.has(explainOption);
}

double benchmarkSeconds(const Arguments& arguments, const QString& option, double absent) {
    return arguments.number(option, {0.1, 99999, absent});
}

ChosenInterfaces benchmarkedInterfaces(const Cameras& cameras, const Arguments& arguments) {
    ChosenInterfaces chosen = chosenInterfaces(cameras, arguments);
    for (const HostInterface* interface : chosen.interfaces)
        cameras.warnOfExcess(*interface);
    return chosen;
}

} // namespace cli
