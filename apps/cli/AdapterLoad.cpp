// SPDX-License-Identifier: BSD-3-Clause
#include "cli/AdapterLoad.h"

namespace cli {

namespace {

using platform::NetworkCount;

/// What the adapter does not count of each frame: preamble, checksum and the gap before the next
/// one (IEEE 802.3).
constexpr double uncountedBytes = 8 + 4 + 12;

} // namespace

QJsonObject adapterLoad(const platform::NetworkCounters& moved, double seconds,
                        double bitsPerSecond) {
    const auto bytes = moved[NetworkCount::AdapterReceivedBytes];
    const auto packets = moved[NetworkCount::AdapterReceived];
    QJsonObject load;
    if (!bytes || !packets || seconds <= 0)
        return load;
    const double bytesPerSecond = static_cast<double>(*bytes) / seconds;
    const double packetsPerSecond = static_cast<double>(*packets) / seconds;
    load[QStringLiteral("bytesPerSecond")] = bytesPerSecond;
    load[QStringLiteral("packetsPerSecond")] = packetsPerSecond;
    if (bitsPerSecond > 0)
        load[QStringLiteral("loadPercent")] =
            100 * 8 * (bytesPerSecond + packetsPerSecond * uncountedBytes) / bitsPerSecond;
    return load;
}

void addAdapterDrops(QJsonObject& load, const platform::NetworkCounters& moved) {
    if (const auto missed = platform::packetsWithoutRoom(moved))
        load[QStringLiteral("missedPackets")] = static_cast<qint64>(*missed);
    if (const auto dropped = moved[NetworkCount::AdapterDropped])
        load[QStringLiteral("droppedPackets")] = static_cast<qint64>(*dropped);
}

QString loadText(const QJsonObject& interface) {
    const QJsonObject load = interface[QStringLiteral("adapter")].toObject();
    const QJsonValue rate = load[QStringLiteral("bytesPerSecond")];
    if (!rate.isDouble())
        return {};
    QString text = QStringLiteral(", receives %1 MB/s").arg(rate.toDouble() / 1e6, 0, 'f', 1);
    const QJsonValue percent = load[QStringLiteral("loadPercent")];
    if (percent.isDouble())
        text += QStringLiteral(" (%1 %)").arg(percent.toDouble(), 0, 'f', 0);
    // Not "droppedPackets", which has frames that no program takes, as LLDP and STP.
    const double missed = load[QStringLiteral("missedPackets")].toDouble();
    if (missed > 0)
        text += QStringLiteral(", had no room for %1 packets").arg(missed, 0, 'f', 0);
    return text;
}

} // namespace cli
