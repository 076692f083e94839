// SPDX-License-Identifier: BSD-3-Clause
#include "cli/StreamRow.h"

#include "cli/FrameFigures.h"

namespace cli {

namespace {

/// Streams that pause for less are not called silent.
constexpr double shownSilence = 1.5;

CameraCounts countsOf(const observer::StreamFigures& figures, bool hasNumberedPackets) {
    CameraCounts counts;
    counts.frames.completeFrames = figures.framesComplete;
    counts.frames.incompleteFrames = figures.framesIncomplete;
    counts.frames.receivedFrames = figures.framesComplete + figures.framesIncomplete;
    counts.frames.lostFrames = static_cast<std::int64_t>(figures.framesLost);
    counts.frames.payloadBytes = figures.dataBytes;
    if (hasNumberedPackets) {
        counts.packetsResent = static_cast<std::int64_t>(figures.packetsResent);
        counts.packetsMissing = static_cast<std::int64_t>(figures.packetsMissing);
    }
    return counts;
}

void addTiming(QJsonObject& row, const observer::FrameTiming& timing) {
    if (timing.frames == 0)
        return;
    const auto seconds = [](std::chrono::nanoseconds time) {
        return std::chrono::duration<double>(time).count();
    };
    row[QStringLiteral("frameSeconds")] =
        seconds(timing.total) / static_cast<double>(timing.frames);
    row[QStringLiteral("longestFrameSeconds")] = seconds(timing.longest);
    row[QStringLiteral("largestGapSeconds")] = seconds(timing.largestGap);
    row[QStringLiteral("burstBytesPerSecond")] = timing.burstBytesPerSecond;
}

} // namespace

void addFigures(QJsonObject& row, const SeenStream& stream, double seconds, double bitsPerSecond) {
    const bool isNumbered = stream.hasNumberedPackets;
    const QJsonObject counted = cameraFigures(countsOf(stream.since, isNumbered),
                                              countsOf(stream.until, isNumbered), seconds);
    for (auto figure = counted.begin(); figure != counted.end(); ++figure)
        row[figure.key()] = figure.value();
    addLinkShare(row, bitsPerSecond);
    if (isNumbered)
        row[QStringLiteral("packetsDuplicate")] =
            static_cast<qint64>(stream.until.packetsDuplicate);
    row[QStringLiteral("unjudgedFrames")] = static_cast<qint64>(stream.until.framesUnjudged);
    addTiming(row, stream.timing);
    if (stream.silence.count() > shownSilence)
        row[QStringLiteral("silentSeconds")] = stream.silence.count();
}

CameraEvidence frameEvidence(const std::string& id, const observer::StreamFigures& figures) {
    CameraEvidence camera;
    camera.id = id;
    camera.framesReceived = figures.framesComplete + figures.framesIncomplete;
    camera.framesIncomplete = figures.framesIncomplete;
    camera.framesLost = figures.framesLost;
    return camera;
}

} // namespace cli
