// SPDX-License-Identifier: BSD-3-Clause
#include "cli/BenchmarkOptions.h"

#include "cli/Arguments.h"
#include "cli/Failure.h"

#include <algorithm>
#include <cmath>

namespace cli {

namespace {

constexpr QLatin1String namedOption("interface");
constexpr QLatin1String allOption("all");
constexpr QLatin1String secondsOption("seconds");
constexpr QLatin1String intervalOption("interval");
constexpr QLatin1String explainOption("explain");
constexpr QLatin1String packetSizeOption("adjust-packet-size");

constexpr NumberRange intervals{0.1, 3600, 0.5};

std::vector<const HostInterface*> allInterfaces(const Cameras& cameras) {
    std::vector<const HostInterface*> all;
    for (const HostInterface& interface : cameras.interfaces())
        all.push_back(&interface);
    return all;
}

/// Each interface once, although it may be named several times.
std::vector<const HostInterface*> namedInterfaces(const Cameras& cameras,
                                                  const QStringList& names) {
    std::vector<const HostInterface*> named;
    for (const QString& name : names) {
        const HostInterface* interface = &cameras.findInterface(name);
        if (std::find(named.begin(), named.end(), interface) == named.end())
            named.push_back(interface);
    }
    return named;
}

} // namespace

QList<QCommandLineOption> benchmarkOptions(const QString& absentSeconds,
                                           const QString& intervalHelp) {
    return {
        {namedOption,
         QStringLiteral("Name or ID of an interface; may be given several times, and left out "
                        "where there is only one."),
         QStringLiteral("interface")},
        {secondsOption, QStringLiteral("How long it takes, %1 by default.").arg(absentSeconds),
         QStringLiteral("number")},
        {intervalOption, intervalHelp, QStringLiteral("number")},
        {allOption, QStringLiteral("All interfaces, at the same time.")},
        {packetSizeOption,
         QStringLiteral("Let GigE cameras negotiate their largest packet size before.")},
        {explainOption,
         QStringLiteral(
             "Say where packets were lost even if no frame was, as they were sent again. "
             "Without it, only lost frames are explained.")},
    };
}

BenchmarkPlan benchmarkPlan(const Arguments& arguments, double absentSeconds) {
    if (arguments.has(namedOption) && arguments.has(allOption))
        throw Failure(QStringLiteral("Either --interface or --all can be given."),
                      ExitCode::WrongUse);
    BenchmarkPlan plan;
    plan.seconds = benchmarkSeconds(arguments, secondsOption, absentSeconds);
    plan.interval =
        std::chrono::milliseconds(std::llround(arguments.number(intervalOption, intervals) * 1000));
    plan.adjustsPacketSize = arguments.has(packetSizeOption);
    return plan;
}

bool explainsAll(const Arguments& arguments) {
    return arguments.has(explainOption);
}

double benchmarkSeconds(const Arguments& arguments, const QString& option, double absent) {
    return arguments.number(option, {0.1, 99999, absent});
}

ChosenInterfaces chosenInterfaces(const Cameras& cameras, const Arguments& arguments) {
    const QStringList names = arguments.values(namedOption);
    ChosenInterfaces chosen;
    chosen.isList = names.size() > 1 || arguments.has(allOption);
    chosen.interfaces = names.isEmpty() ? allInterfaces(cameras) : namedInterfaces(cameras, names);
    if (chosen.interfaces.empty())
        throw Failure(QStringLiteral("There is no camera."));
    if (chosen.interfaces.size() > 1 && !chosen.isList)
        throw Failure(QStringLiteral("Give --all, or --interface: %1.").arg(chosen.names()),
                      ExitCode::WrongUse);
    for (const HostInterface* interface : chosen.interfaces)
        cameras.warnOfExcess(*interface);
    return chosen;
}

} // namespace cli
