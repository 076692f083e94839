// SPDX-License-Identifier: BSD-3-Clause
#include "cli/ObservedUsbBus.h"

#include "cli/FrameFigures.h"
#include "cli/LossFindings.h"
#include "cli/StreamRow.h"

#include <QJsonArray>

#include <tuple>
#include <utility>
#include <vector>

namespace cli {

namespace {

/// A bus without transfers wakes its thread so often.
constexpr std::chrono::milliseconds longestWait{500};
/// The hub in the host controller has this place.
const std::string rootHubPorts = "0";

} // namespace

ObservedUsbBus::ObservedUsbBus(QString name, std::unique_ptr<observer::UsbMonitor> monitor,
                               std::filesystem::path sysfs)
    : m_name(std::move(name)), m_sysfs(std::move(sysfs)), m_observer(std::move(monitor)),
      m_thread([this] {
          while (!m_isEnding && m_observer.receive(longestWait))
              continue;
      }) {}

ObservedUsbBus::~ObservedUsbBus() {
    m_isEnding = true;
    m_observer.wake();
    m_thread.join();
}

ObservedUsbBus::DeviceKey ObservedUsbBus::deviceKey(const observer::UsbStreamKey& key) {
    return {std::get<0>(key), std::get<1>(key)};
}

ObservedUsbBus::Reading ObservedUsbBus::read() {
    readDevices();
    joinStreams();
    return {m_observer.read()};
}

bool ObservedUsbBus::isSameCamera(const observer::UsbStreamKey& ended,
                                  const observer::UsbStreamKey& later) {
    const platform::UsbDevice& former = deviceOf(ended);
    const platform::UsbDevice& present = deviceOf(later);
    return m_present.count(deviceKey(ended)) == 0 && m_present.count(deviceKey(later)) != 0 &&
           !former.serialNumber.empty() && former.serialNumber == present.serialNumber &&
           former.product == present.product && std::get<2>(ended) == std::get<2>(later);
}

void ObservedUsbBus::joinStreams() {
    const std::vector<observer::UsbStreamKey> streams = m_observer.streams();
    for (const observer::UsbStreamKey& ended : streams)
        for (const observer::UsbStreamKey& later : streams)
            if (isSameCamera(ended, later))
                m_observer.join(ended, later);
}

void ObservedUsbBus::readDevices() {
    bool isPresent = false;
    m_present.clear();
    for (platform::UsbDevice& device : platform::usbDevices(m_sysfs)) {
        if (device.ports == rootHubPorts && m_name == QStringLiteral("usbmon%1").arg(device.bus)) {
            isPresent = true;
            m_bitsPerSecond = static_cast<double>(device.linkSpeed);
        }
        const DeviceKey key(device.bus, device.number);
        m_present.insert(key);
        m_devices[key] = std::move(device);
    }
    if (m_isPresent && !isPresent)
        m_notices.append(
            QStringLiteral("The USB bus %1 was removed. Start this program again to observe a "
                           "bus that takes its place.")
                .arg(m_name));
    m_isPresent = isPresent;
}

QStringList ObservedUsbBus::takeNotices() {
    return std::exchange(m_notices, {});
}

const platform::UsbDevice& ObservedUsbBus::deviceOf(const observer::UsbStreamKey& key) {
    platform::UsbDevice& device = m_devices[deviceKey(key)];
    std::tie(device.bus, device.number) = deviceKey(key);
    return device;
}

QJsonObject ObservedUsbBus::identityOf(const observer::UsbStreamKey& key) {
    const platform::UsbDevice& device = deviceOf(key);
    const QString place = QStringLiteral("%1:%2").arg(device.bus).arg(device.number);
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

QJsonObject ObservedUsbBus::figures(const Reading& now, bool isWhole) {
    const double period =
        std::chrono::duration<double>(now.time - (isWhole ? m_start : m_last)).count();
    QJsonArray rows;
    for (const auto& [key, stream] : now.streams) {
        QJsonObject row = identityOf(key);
        addFigures(row,
                   {isWhole ? observer::StreamFigures() : stream.known, stream.figures,
                    isWhole ? stream.allTiming : stream.timing, stream.silence, false},
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
            {QStringLiteral("observerMissedPackets"), static_cast<qint64>(now.missedEvents)}};
}

QJsonObject ObservedUsbBus::interval() {
    const Reading now = read();
    const QJsonObject document = figures(now, false);
    m_last = now.time;
    return document;
}

QJsonObject ObservedUsbBus::result() {
    const Reading now = read();
    QJsonObject document = figures(now, true);
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
