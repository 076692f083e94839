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
    /// Seconds; 0 for as long as nobody interrupts it.
    double seconds = 0;
    std::chrono::milliseconds interval{500};
    bool adjustsPacketSize = false;
};

/// What is told at each interval: seconds since the start, and the cameras' figures so far, with
/// the average frame rates of the interval. False ends the benchmark like an interruption.
using BenchmarkProgress = std::function<bool(double elapsed, const QJsonArray& cameras)>;

/// Streams from all cameras of an interface until the time is up or the program is interrupted, and
/// answers "interface", "seconds", "interrupted" and the "cameras" with their figures; their frame
/// rates are averages of the whole time. Cameras that are not open are left out of it. Thrown as a
/// Failure: that no camera streams.
QJsonObject runBenchmark(Cameras& cameras, const HostInterface& interface,
                         const BenchmarkPlan& plan, Interruption& interruption,
                         const BenchmarkProgress& progress = {});

/// Whether every open camera has streamed.
bool hasMeasuredAll(const QJsonObject& benchmark);
/// Whether a frame was lost, or arrived damaged.
bool hasLoss(const QJsonObject& benchmark);

/// The figures of cameras as lines of a table, headings first; the less important columns are left
/// out where they do not fit into \p width.
QStringList benchmarkLines(const QJsonArray& cameras, int width = std::numeric_limits<int>::max());
/// The table, and a line on the time that it covers.
QString benchmarkText(const QJsonObject& benchmark);

/// The options --interface, --seconds and --adjust-packet-size; \p absentSeconds is how long it
/// takes without the second.
QList<QCommandLineOption> benchmarkOptions(const QString& absentSeconds);
/// What the last two of them ask for.
BenchmarkPlan benchmarkPlan(const Arguments& arguments, double absentSeconds);
/// The length that an option asks for.
double benchmarkSeconds(const Arguments& arguments, const QString& option, double absent);
/// The interface that --interface names, or the only one.
const HostInterface& chosenInterface(const Cameras& cameras, const Arguments& arguments);

} // namespace cli
