// SPDX-License-Identifier: BSD-3-Clause
#include "cli/ObservedUsbBus.h"

#include "cli/FrameFigures.h"
#include "cli/LossFindings.h"
#include "cli/StreamRow.h"

#include <QJsonArray>

#include <utility>

namespace cli {

namespace {

/// A bus without transfers wakes its thread so often.
constexpr std::chrono::milliseconds longestWait{500};
/// The hub in the host controller has this place.
const std::string rootHubPorts = "0";

} // namespace

ObservedUsbBus::ObservedUsbBus(QString name, std::unique_ptr<observer::UsbMonitor> monitor,
                               std::filesystem::path sysfs)
    : m_name(std::move(name)), m_sysfs(std::move(sysfs)), m_observer(std::move(monitor)) {
    readDevices();
    for (const auto& [key, device] : m_devices)
        if (device.ports == rootHubPorts && m_name == QStringLiteral("usbmon%1").arg(device.bus))
            m_bitsPerSecond = static_cast<double>(device.linkSpeed);
    m_thread = std::thread([this] {
        while (!m_isEnding && m_observer.receive(longestWait))
            continue;
    });
}

ObservedUsbBus::~ObservedUsbBus() {
    m_isEnding = true;
    m_observer.wake();
    m_thread.join();
}

ObservedUsbBus::StreamKey ObservedUsbBus::keyOf(const observer::UsbStreamReading& stream) {
    return {{stream.bus, stream.device}, stream.endpoint};
}

ObservedUsbBus::Reading ObservedUsbBus::read() {
    observer::UsbReading taken = m_observer.read();
    Reading reading;
    reading.missedEvents = taken.missedEvents;
    for (observer::UsbStreamReading& stream : taken.streams) {
        const StreamKey key = keyOf(stream);
        m_allTiming[key].add(stream.timing);
        reading.streams[key] = std::move(stream);
    }
    readDevices();
    return reading;
}

void ObservedUsbBus::readDevices() {
    for (platform::UsbDevice& device : platform::usbDevices(m_sysfs))
        m_devices[{device.bus, device.number}] = std::move(device);
}

const platform::UsbDevice& ObservedUsbBus::deviceOf(const StreamKey& key) {
    platform::UsbDevice& device = m_devices[key.first];
    std::tie(device.bus, device.number) = key.first;
    return device;
}

QJsonObject ObservedUsbBus::identityOf(const StreamKey& key) {
    const platform::UsbDevice& device = deviceOf(key);
    const QString place = QStringLiteral("%1:%2").arg(key.first.first).arg(key.first.second);
    const QString serialNumber = QString::fromStdString(device.serialNumber);
    const QString model = QString::fromStdString(device.product);
    return {{QStringLiteral("id"), serialNumber.isEmpty() ? place : serialNumber},
            {QStringLiteral("name"), model},
            {QStringLiteral("model"), model},
            {QStringLiteral("serialNumber"), serialNumber},
            {QStringLiteral("opened"), false},
            {QStringLiteral("measured"), true},
            {QStringLiteral("address"), place}};
}

QJsonObject ObservedUsbBus::figures(const Reading& since, const Reading& until) {
    const double period = std::chrono::duration<double>(until.time - since.time).count();
    QJsonArray rows;
    for (const auto& [key, stream] : until.streams) {
        const auto before = since.streams.find(key);
        QJsonObject row = identityOf(key);
        addFigures(
            row,
            {before == since.streams.end() ? observer::StreamFigures() : before->second.figures,
             stream.figures, stream.timing, stream.silence, false},
            period, m_bitsPerSecond);
        rows.append(row);
    }
    QJsonObject total = totalFigures(rows);
    if (m_bitsPerSecond > 0)
        total[QStringLiteral("bitsPerSecond")] = m_bitsPerSecond;
    addLinkShare(total, m_bitsPerSecond);
    return {{QStringLiteral("interface"), m_name},
            {QStringLiteral("cameras"), rows},
            {QStringLiteral("total"), total},
            {QStringLiteral("observerMissedPackets"), static_cast<qint64>(until.missedEvents)}};
}

QJsonObject ObservedUsbBus::interval() {
    Reading now = read();
    const QJsonObject document = figures(m_last, now);
    m_last = std::move(now);
    return document;
}

QJsonObject ObservedUsbBus::result() {
    Reading now = read();
    for (auto& [key, stream] : now.streams)
        stream.timing = m_allTiming[key];
    Reading first;
    first.time = m_start;
    QJsonObject document = figures(first, now);
    document[QStringLiteral("findings")] = findings(now);
    return document;
}

QJsonArray ObservedUsbBus::findings(const Reading& now) {
    InterfaceEvidence evidence;
    evidence.name = m_name.toStdString();
    for (const auto& [key, stream] : now.streams) {
        CameraEvidence camera = frameEvidence(
            identityOf(key)[QStringLiteral("id")].toString().toStdString(), stream.figures);
        camera.isUsb = true;
        camera.usbSpeed = static_cast<std::uint64_t>(deviceOf(key).linkSpeed);
        evidence.cameras.push_back(std::move(camera));
    }
    return lossFindings(evidence);
}

} // namespace cli
