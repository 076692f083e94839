// SPDX-License-Identifier: BSD-3-Clause
#include "cli/PlanVerification.h"

#include "cli/Benchmark.h"
#include "cli/Failure.h"
#include "engine/CameraHandler.h"
#include "logging/Log.h"

namespace cli {

namespace {

constexpr double loweredShare = 0.95;
constexpr std::size_t mostRounds = 11;

/// A camera that sends nothing loses nothing, whatever its limit is.
void requireFrames(const QJsonObject& figures, const PlannedLink& link, double seconds) {
    requireSending(figures);
    if (figures[QStringLiteral("receivedFrames")].toDouble(1) > 0)
        return;
    const QString id = figures[QStringLiteral("id")].toString();
    const PlannedCamera* const camera = findPlanned(*link.plan, id);
    if (camera && !camera->handler->isTriggered())
        throw silentCamera(id, seconds);
    logWarning(id.toStdString() + ": It waits for triggers and sends nothing; what is lost when it "
                                  "sends is not measured.");
}

VerifiedRound measureRound(const PlannedLink& link, Cameras& cameras, double seconds,
                           Interruption& interruption) {
    BenchmarkPlan benchmark;
    benchmark.seconds = seconds;
    const QJsonObject result = runBenchmark(cameras, link.interfaces, benchmark, interruption);
    if (result[QStringLiteral("interrupted")].toBool())
        throw Failure(QStringLiteral("Interrupted: the limits of its last plan stay."));
    requireMeasuredAll(result);
    VerifiedRound round{link.usableBytes, 0, 0};
    for (const QJsonValue& interface : interfacesOf(result)) {
        for (const QJsonValue& camera : interface[QStringLiteral("cameras")].toArray())
            requireFrames(camera.toObject(), link, seconds);
        const QJsonObject total = interface[QStringLiteral("total")].toObject();
        round.carriedBytes += total[QStringLiteral("bytesPerSecond")].toDouble();
        round.lostFrames += total[QStringLiteral("lostFrames")].toDouble() +
                            total[QStringLiteral("incompleteFrames")].toDouble();
    }
    return round;
}

/// Applies a plan with less; false where that is not possible.
bool lower(PlannedLink& link) {
    const double less = link.usableBytes * loweredShare;
    const BandwidthPlan division = link.plan->divide(less);
    if (division.outcome != BandwidthPlan::Outcome::Divided) {
        link.plan->divide(link.usableBytes);
        return false;
    }
    link.usableBytes = less;
    link.division = division;
    link.isApplied = link.plan->apply();
    return link.isApplied;
}

} // namespace

bool verifyPlan(PlannedLink& link, Cameras& cameras, double seconds, Interruption& interruption) {
    while (true) {
        link.rounds.push_back(measureRound(link, cameras, seconds, interruption));
        if (!link.isLossy())
            return true;
        if (link.rounds.size() >= mostRounds || !lower(link))
            return false;
    }
}

} // namespace cli
