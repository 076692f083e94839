// SPDX-License-Identifier: BSD-3-Clause
#include "cli/Benchmark.h"

#include "cli/StreamingCameras.h"
#include "cli/Table.h"
#include "cli/Terminal.h"

#include <algorithm>
#include <cmath>
#include <memory>

namespace cli {

namespace {

using std::chrono::milliseconds;
using std::chrono::steady_clock;

/// So often disconnected cameras are looked for, and keys.
constexpr milliseconds longestTick{50};

/// The streams of several interfaces.
class Streams {
public:
    Streams(Cameras& cameras, const ChosenInterfaces& chosen, bool adjustsPacketSize)
        : m_isList(chosen.isList), m_areSimulated(cameras.areSimulated()) {
        for (const HostInterface* interface : chosen.interfaces)
            m_streams.push_back(std::make_unique<StreamingCameras>(
                cameras.controller(), *interface, adjustsPacketSize, m_areSimulated));
    }

    bool isEmpty() const {
        return std::all_of(m_streams.begin(), m_streams.end(),
                           [](const auto& streams) { return streams->isEmpty(); });
    }

    void findDisconnected() {
        for (const auto& streams : m_streams)
            streams->findDisconnected();
    }

    QJsonObject interval() {
        return document(QStringLiteral("interval"), &StreamingCameras::interval);
    }

    QJsonObject end(bool isInterrupted) {
        // All before the questions to their cameras, which may take seconds.
        for (const auto& streams : m_streams)
            streams->stop();
        QJsonObject result = document(QStringLiteral("result"), &StreamingCameras::result);
        result[QStringLiteral("interrupted")] = isInterrupted;
        return result;
    }

private:
    QJsonObject document(const QString& type, QJsonObject (StreamingCameras::*figures)()) {
        QJsonArray interfaces;
        for (const auto& streams : m_streams)
            interfaces.append((*streams.*figures)());
        QJsonObject result = interfaces.first().toObject();
        if (m_isList)
            result = QJsonObject{{QStringLiteral("interfaces"), interfaces}};
        result[QStringLiteral("type")] = type;
        result[QStringLiteral("simulated")] = m_areSimulated;
        result[QStringLiteral("seconds")] = m_streams.front()->seconds();
        return result;
    }

    const bool m_isList;
    const bool m_areSimulated;
    std::vector<std::unique_ptr<StreamingCameras>> m_streams;
};

bool isUnmeasured(const QJsonObject& camera) {
    return camera[QStringLiteral("opened")].toBool() &&
           !camera[QStringLiteral("measured")].toBool();
}

bool anyCamera(const QJsonObject& benchmark, bool (*is)(const QJsonObject& camera)) {
    for (const QJsonValue& interface : interfacesOf(benchmark)) {
        const QJsonArray cameras = interface[QStringLiteral("cameras")].toArray();
        if (std::any_of(cameras.begin(), cameras.end(),
                        [is](const QJsonValue& camera) { return is(camera.toObject()); }))
            return true;
    }
    return false;
}

} // namespace

bool awaitEnd(const BenchmarkPlan& plan, Interruption& interruption, const BenchmarkTick& onTick,
              const std::function<bool()>& onInterval) {
    const auto start = steady_clock::now();
    const auto end = plan.seconds > 0 ? start + milliseconds(std::llround(plan.seconds * 1000))
                                      : steady_clock::time_point::max();
    auto nextInterval = start + plan.interval;
    while (true) {
        const auto before = steady_clock::now();
        const auto nextTick = onTick ? before + longestTick : end;
        const auto until = std::min({nextTick, nextInterval, end});
        const auto left = std::chrono::ceil<milliseconds>(until - before);
        if (interruption.wait(std::max(left, milliseconds(0))))
            return true;
        const auto now = steady_clock::now();
        if (now >= end)
            return false;
        if (onTick && !onTick())
            return true;
        if (now < nextInterval)
            continue;
        if (!onInterval())
            return true;
        // Leaves out intervals that passed while a camera was asked.
        while (nextInterval <= now)
            nextInterval += plan.interval;
    }
}

QJsonObject runBenchmark(Cameras& cameras, const ChosenInterfaces& chosen,
                         const BenchmarkPlan& plan, Interruption& interruption,
                         const BenchmarkProgress& progress, const BenchmarkTick& tick) {
    cameras.warnOfLimits();
    Streams streams(cameras, chosen, plan.adjustsPacketSize);
    if (streams.isEmpty())
        throw Failure(QStringLiteral("No camera of %1 streams.").arg(chosen.names()));
    const bool isInterrupted = awaitEnd(
        plan, interruption,
        [&] {
            streams.findDisconnected();
            return !tick || tick();
        },
        [&] { return !progress || progress(streams.interval()); });
    return streams.end(isInterrupted);
}

BenchmarkProgress makeJsonProgress(Terminal& terminal) {
    return [&terminal](const QJsonObject& interval) {
        terminal.print(jsonLine(interval));
        return terminal.outputError() == 0;
    };
}

QJsonArray interfacesOf(const QJsonObject& benchmark) {
    const QJsonValue list = benchmark[QStringLiteral("interfaces")];
    return list.isArray() ? list.toArray() : QJsonArray{benchmark};
}

bool hasMeasuredAll(const QJsonObject& benchmark) {
    return !anyCamera(benchmark, isUnmeasured);
}

void requireMeasuredAll(const QJsonObject& benchmark) {
    for (const QJsonValue& interface : interfacesOf(benchmark)) {
        for (const QJsonValue& value : interface[QStringLiteral("cameras")].toArray()) {
            const QJsonObject camera = value.toObject();
            const QString id = camera[QStringLiteral("id")].toString();
            if (camera.contains(QStringLiteral("disconnectedAfterSeconds")))
                throw Failure(QStringLiteral("%1: It was disconnected.").arg(id));
            if (isUnmeasured(camera))
                throw Failure(
                    QStringLiteral("%1: It did not stream, see the messages above.").arg(id));
        }
    }
}

Failure silentCamera(const QString& id, double seconds) {
    return Failure(QStringLiteral("%1: None of its frames came in %2 s. If it waits or has "
                                  "stopped, start or trigger it; if it is slow, measure longer.")
                       .arg(id)
                       .arg(seconds));
}

void requireSending(const QJsonObject& camera) {
    const QJsonValue silent = camera[QStringLiteral("silentSeconds")];
    if (silent.isDouble())
        throw silentCamera(camera[QStringLiteral("id")].toString(), silent.toDouble());
}

bool hasLoss(const QJsonObject& benchmark) {
    return anyCamera(benchmark, [](const QJsonObject& camera) {
        const QJsonValue received = camera[QStringLiteral("receivedFrames")];
        return (received.isDouble() && received.toDouble() == 0) ||
               camera[QStringLiteral("lostFrames")].toDouble() > 0 ||
               camera[QStringLiteral("incompleteFrames")].toDouble() > 0;
    });
}

} // namespace cli
