// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "cli/Failure.h"
#include "cli/InterfaceChoice.h"
#include "cli/platform/Interruption.h"

#include <QJsonArray>
#include <QJsonObject>
#include <QString>

#include <chrono>
#include <functional>

namespace cli {

class Terminal;

/// How interfaces are to be benchmarked.
struct BenchmarkPlan {
    /// Seconds; 0: until an interruption.
    double seconds = 0;
    std::chrono::milliseconds interval{500};
    bool adjustsPacketSize = false;
};

/// Called several times a second. Returning false ends the benchmark.
using BenchmarkTick = std::function<bool()>;

/// Called at each interval with a document like that of runBenchmark(), of "type" "interval": its
/// rates are averages of the interval, its counts those since the start. Returning false ends the
/// benchmark.
using BenchmarkProgress = std::function<bool(const QJsonObject& interval)>;

/// Streams from all open cameras of the interfaces at the same time until the time is up or the
/// program is interrupted. Returns a document with "type" ("result"), "seconds" and "interrupted",
/// and with "interface", "cameras" and "total" of the interface, or a list of such objects called
/// "interfaces", each with "findings" of where frames were lost. Rates are averages of the whole
/// time. Throws a Failure when no camera streams.
QJsonObject runBenchmark(Cameras& cameras, const ChosenInterfaces& chosen,
                         const BenchmarkPlan& plan, Interruption& interruption,
                         const BenchmarkProgress& progress = {}, const BenchmarkTick& tick = {});

/// Prints each interval as one line of JSON. Ends the benchmark when that cannot be written.
BenchmarkProgress makeJsonProgress(Terminal& terminal);

/// Waits until the time of \p plan is up; calls \p onTick often, if it is not empty, and \p
/// onInterval at each interval. Returns true when it was ended early: by an interruption, or since
/// one of the two returned false.
bool awaitEnd(const BenchmarkPlan& plan, Interruption& interruption, const BenchmarkTick& onTick,
              const std::function<bool()>& onInterval);

/// The objects of a document that have "interface", "cameras" and "total".
QJsonArray interfacesOf(const QJsonObject& benchmark);
/// Whether every open camera has streamed to the end.
bool hasMeasuredAll(const QJsonObject& benchmark);
/// Throws a Failure that names a camera for which hasMeasuredAll() is false, or which was
/// disconnected.
void requireMeasuredAll(const QJsonObject& benchmark);
/// That no frame of a camera came in \p seconds, though it should send; says what to do.
Failure silentCamera(const QString& id, double seconds);
/// Throws it for a camera that stopped during the benchmark.
void requireSending(const QJsonObject& camera);
/// Whether a frame was lost or arrived incomplete, or none of a camera came.
bool hasLoss(const QJsonObject& benchmark);

} // namespace cli
