// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "cli/Cameras.h"
#include "cli/platform/Interruption.h"

#include <QCommandLineOption>
#include <QJsonArray>
#include <QJsonObject>
#include <QList>
#include <QStringList>

#include <chrono>
#include <functional>
#include <limits>

namespace cli {

struct Command;
class Arguments;

/// How an interface is to be benchmarked.
struct BenchmarkPlan {
    /// Seconds; 0: until an interruption.
    double seconds = 0;
    std::chrono::milliseconds interval{500};
    bool adjustsPacketSize = false;
};

/// Called at each interval with the seconds since the start and the cameras' figures so far. Their
/// frame rates are averages of the interval. Returning false ends the benchmark.
using BenchmarkProgress = std::function<bool(double elapsed, const QJsonArray& cameras)>;

/// Streams from all open cameras of an interface until the time is up or the program is
/// interrupted. Returns "interface", "seconds", "interrupted" and the "cameras" with their figures;
/// their frame rates are averages of the whole time. Throws a Failure when no camera streams.
QJsonObject runBenchmark(Cameras& cameras, const HostInterface& interface,
                         const BenchmarkPlan& plan, Interruption& interruption,
                         const BenchmarkProgress& progress = {});

/// Whether every open camera has streamed.
bool hasMeasuredAll(const QJsonObject& benchmark);
/// Whether a frame was lost or arrived incomplete.
bool hasLoss(const QJsonObject& benchmark);

/// The figures of cameras as lines of a table, headings first. Drops the less important columns
/// when the table is wider than \p width characters.
QStringList benchmarkLines(const QJsonArray& cameras, int width = std::numeric_limits<int>::max());
/// The table below a line with the interface and the duration.
QString benchmarkText(const QJsonObject& benchmark);

/// The options --interface, --seconds and --adjust-packet-size. \p absentSeconds is the default of
/// --seconds, for the help.
QList<QCommandLineOption> benchmarkOptions(const QString& absentSeconds);
/// The plan that --seconds and --adjust-packet-size describe.
BenchmarkPlan benchmarkPlan(const Arguments& arguments, double absentSeconds);
/// The duration in seconds that \p option gives, or \p absent.
double benchmarkSeconds(const Arguments& arguments, const QString& option, double absent);
/// The interface that --interface names, or the only one.
const HostInterface& chosenInterface(const Cameras& cameras, const Arguments& arguments);

} // namespace cli
