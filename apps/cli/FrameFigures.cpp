// SPDX-License-Identifier: BSD-3-Clause
#include "cli/FrameFigures.h"

#include <algorithm>

namespace cli {

namespace {

const QLatin1String bytesPerSecondKey("bytesPerSecond");
const QLatin1String sentFramesKey("sentFrames");
const QLatin1String lostFramesKey("lostFrames");
const QLatin1String incompleteFramesKey("incompleteFrames");
const QLatin1String packetsResentKey("packetsResent");
const QLatin1String packetsMissingKey("packetsMissing");

double averageRate(std::uint64_t since, std::uint64_t until, double seconds) {
    return seconds > 0 && until > since ? static_cast<double>(until - since) / seconds : 0;
}

void addLoss(QJsonObject& figures) {
    const double sent = figures.value(sentFramesKey).toDouble();
    const double bad =
        figures.value(lostFramesKey).toDouble() + figures.value(incompleteFramesKey).toDouble();
    if (sent > 0)
        figures[QStringLiteral("lossPercent")] = 100 * bad / sent;
}

/// The sum of a member of the rows; nothing where no row has it.
std::optional<double> sumOfMember(const QJsonArray& rows, QLatin1String key) {
    std::optional<double> sum;
    for (const QJsonValue& row : rows) {
        const QJsonValue value = row.toObject().value(key);
        if (value.isDouble())
            sum = sum.value_or(0) + value.toDouble();
    }
    return sum;
}

} // namespace

QJsonObject cameraFigures(const CameraCounts& since, const CameraCounts& until, double seconds) {
    const FrameStatistics& frames = until.frames;
    // Negative only while the camera numbers frames in another order.
    const auto lost = std::max<qint64>(frames.lostFrames, 0);
    const auto received = static_cast<qint64>(frames.receivedFrames);
    QJsonObject figures{
        {QStringLiteral("framesPerSecond"),
         averageRate(since.frames.receivedFrames, frames.receivedFrames, seconds)},
        {bytesPerSecondKey, averageRate(since.frames.payloadBytes, frames.payloadBytes, seconds)},
        {QStringLiteral("payloadBytes"), static_cast<qint64>(frames.payloadBytes)},
        {QStringLiteral("receivedFrames"), received},
        {sentFramesKey, received + lost},
        {lostFramesKey, lost},
        {incompleteFramesKey, static_cast<qint64>(frames.incompleteFrames)},
    };
    addLoss(figures);
    if (until.packetsResent)
        figures[packetsResentKey] = static_cast<qint64>(*until.packetsResent);
    if (until.packetsMissing)
        figures[packetsMissingKey] = static_cast<qint64>(*until.packetsMissing);
    return figures;
}

QJsonObject totalFigures(const QJsonArray& rows) {
    QJsonObject total;
    for (const QLatin1String key : {QLatin1String("framesPerSecond"), bytesPerSecondKey})
        total[key] = sumOfMember(rows, key).value_or(0);
    for (const QLatin1String key : {QLatin1String("payloadBytes"), QLatin1String("receivedFrames"),
                                    sentFramesKey, lostFramesKey, incompleteFramesKey})
        total[key] = static_cast<qint64>(sumOfMember(rows, key).value_or(0));
    for (const QLatin1String key : {packetsResentKey, packetsMissingKey}) {
        if (const auto sum = sumOfMember(rows, key))
            total[key] = static_cast<qint64>(*sum);
    }
    addLoss(total);
    return total;
}

void addLinkShare(QJsonObject& figures, double bitsPerSecond) {
    if (bitsPerSecond > 0 && figures.contains(bytesPerSecondKey))
        figures[QStringLiteral("linkPercent")] =
            100 * figures.value(bytesPerSecondKey).toDouble() * 8 / bitsPerSecond;
}

} // namespace cli
