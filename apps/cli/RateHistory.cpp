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

void RateHistory::Camera::add(const QJsonValue& figures, double seconds) {
    const double allBytes = figures[QStringLiteral("payloadBytes")].toDouble();
    const double allBadFrames = figures[QStringLiteral("lostFrames")].toDouble() +
                                figures[QStringLiteral("incompleteFrames")].toDouble();
    const double newBytes = std::max(allBytes - std::exchange(bytes, allBytes), 0.0);
    bytesPerSecond.push_back(newBytes / seconds);
    // A frame that comes late is not lost any more; the next one is no second loss.
    lostFrames.push_back(std::max(allBadFrames - badFrames, 0.0));
    badFrames = std::max(badFrames, allBadFrames);
}

void RateHistory::Camera::joinRest(double seconds, double rest) {
    const double restRate = bytesPerSecond.back();
    bytesPerSecond.pop_back();
    double& rate = bytesPerSecond.back();
    rate = (rate * seconds + restRate * rest) / (seconds + rest);
    const double restLost = lostFrames.back();
    lostFrames.pop_back();
    lostFrames.back() += restLost;
}

void RateHistory::add(const QJsonObject& benchmark) {
    const double end = benchmark[QStringLiteral("seconds")].toDouble();
    const double begin = m_ends.empty() ? 0 : m_ends.back();
    if (end <= begin)
        return;
    m_ends.push_back(end);
    const QJsonArray now = interfacesOf(benchmark);
    for (int i = 0; i < now.size(); ++i) {
        const auto index = static_cast<std::size_t>(i);
        if (m_interfaces.size() <= index)
            m_interfaces.push_back(emptyHistory(now[i].toObject()));
        int row = 0;
        for (Camera& camera : m_interfaces[index].cameras)
            camera.add(now[i][QStringLiteral("cameras")][row++], end - begin);
    }
    if (benchmark[QStringLiteral("type")].toString() == QLatin1String("result"))
        joinShortRest();
}

void RateHistory::joinShortRest() {
    const std::size_t count = m_ends.size();
    if (count < 2)
        return;
    const double seconds = m_ends[count - 2] - (count < 3 ? 0 : m_ends[count - 3]);
    const double rest = m_ends[count - 1] - m_ends[count - 2];
    if (rest >= seconds / 2)
        return;
    m_ends.erase(m_ends.end() - 2);
    for (Interface& interface : m_interfaces) {
        for (Camera& camera : interface.cameras)
            camera.joinRest(seconds, rest);
    }
}

QJsonArray RateHistory::document() const {
    std::vector<double> middles;
    for (std::size_t i = 0; i < m_ends.size(); ++i)
        middles.push_back(((i == 0 ? 0 : m_ends[i - 1]) + m_ends[i]) / 2);
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
                            {QStringLiteral("seconds"), toArray(middles)},
                            {QStringLiteral("cameras"), cameras}};
        if (interface.bitsPerSecond > 0)
            history[QStringLiteral("bitsPerSecond")] = interface.bitsPerSecond;
        interfaces.append(history);
    }
    return interfaces;
}

} // namespace cli
