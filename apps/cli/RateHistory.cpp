// SPDX-License-Identifier: BSD-3-Clause
#include "cli/RateHistory.h"

#include "cli/Benchmark.h"

#include <algorithm>
#include <utility>

namespace cli {

namespace {

QJsonArray toArray(const std::vector<double>& numbers) {
    QJsonArray array;
    std::copy(numbers.begin(), numbers.end(), std::back_inserter(array));
    return array;
}

} // namespace

RateHistory::Interface RateHistory::emptyHistory(const QJsonObject& interface) {
    Interface history;
    history.name = interface[QStringLiteral("interface")].toString();
    history.bitsPerSecond =
        interface[QStringLiteral("total")][QStringLiteral("bitsPerSecond")].toDouble();
    for (const QJsonValue& each : interface[QStringLiteral("cameras")].toArray()) {
        Camera camera;
        camera.id = each[QStringLiteral("id")].toString();
        camera.name = each[QStringLiteral("name")].toString();
        history.cameras.push_back(camera);
    }
    return history;
}

void RateHistory::add(const QJsonObject& benchmark) {
    const double end = benchmark[QStringLiteral("seconds")].toDouble();
    const double length = end - m_end;
    if (length <= 0)
        return;
    m_seconds.push_back(m_end + length / 2);
    m_end = end;
    const QJsonArray now = interfacesOf(benchmark);
    for (int i = 0; i < now.size(); ++i) {
        const auto index = static_cast<std::size_t>(i);
        if (m_interfaces.size() <= index)
            m_interfaces.push_back(emptyHistory(now[i].toObject()));
        int row = 0;
        for (Camera& camera : m_interfaces[index].cameras) {
            const QJsonValue figures = now[i][QStringLiteral("cameras")][row++];
            const double bytes = figures[QStringLiteral("payloadBytes")].toDouble();
            const double badFrames = figures[QStringLiteral("lostFrames")].toDouble() +
                                     figures[QStringLiteral("incompleteFrames")].toDouble();
            const double sent = bytes - std::exchange(camera.bytes, bytes);
            const double lost = badFrames - std::exchange(camera.badFrames, badFrames);
            camera.bytesPerSecond.push_back(std::max(sent, 0.0) / length);
            camera.lostFrames.push_back(std::max(lost, 0.0));
        }
    }
}

QJsonArray RateHistory::document() const {
    QJsonArray interfaces;
    for (const Interface& interface : m_interfaces) {
        QJsonArray cameras;
        for (const Camera& camera : interface.cameras)
            cameras.append(
                QJsonObject{{QStringLiteral("id"), camera.id},
                            {QStringLiteral("name"), camera.name},
                            {QStringLiteral("bytesPerSecond"), toArray(camera.bytesPerSecond)},
                            {QStringLiteral("lostFrames"), toArray(camera.lostFrames)}});
        QJsonObject history{{QStringLiteral("interface"), interface.name},
                            {QStringLiteral("seconds"), toArray(m_seconds)},
                            {QStringLiteral("cameras"), cameras}};
        if (interface.bitsPerSecond > 0)
            history[QStringLiteral("bitsPerSecond")] = interface.bitsPerSecond;
        interfaces.append(history);
    }
    return interfaces;
}

} // namespace cli
