// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "cli/Benchmark.h"
#include "cli/InterfaceChoice.h"

#include <QCommandLineOption>
#include <QList>
#include <QString>

namespace cli {

class Arguments;

/// The options --seconds, --interval and --explain. \p absentSeconds is the default of --seconds,
/// \p intervalHelp explains --interval.
QList<QCommandLineOption> timeOptions(const QString& absentSeconds, const QString& intervalHelp);
/// These, and --interface, --all and --adjust-packet-size.
QList<QCommandLineOption> benchmarkOptions(const QString& absentSeconds,
                                           const QString& intervalHelp);
/// The times that --seconds and --interval give.
BenchmarkPlan measuredTime(const Arguments& arguments, double absentSeconds);
/// The plan that --seconds, --interval and --adjust-packet-size describe.
BenchmarkPlan benchmarkPlan(const Arguments& arguments, double absentSeconds);
/// Whether the place of every loss is to be told, see LossFindings.h.
bool explainsAll(const Arguments& arguments);
/// The duration in seconds that \p option gives, or \p absent.
double benchmarkSeconds(const Arguments& arguments, const QString& option, double absent);
/// The chosen interfaces; warns of each whose cameras may send more than it carries.
ChosenInterfaces benchmarkedInterfaces(const Cameras& cameras, const Arguments& arguments);

} // namespace cli
