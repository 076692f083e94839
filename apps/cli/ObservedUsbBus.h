// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "cli/ObservedInterface.h"
#include "observer/UsbObserver.h"
#include "platform/UsbDevice.h"

#include <QString>
#include <QStringList>

#include <atomic>
#include <chrono>
#include <cstdint>
#include <filesystem>
#include <map>
#include <memory>
#include <set>
#include <thread>
#include <utility>

namespace cli {

/// One USB bus, with a thread that takes what its devices send.
class ObservedUsbBus final : public ObservedInterface {
public:
    /// Begins at once. \p sysfs has the names of devices, see platform::usbDevices().
    ObservedUsbBus(QString name, std::unique_ptr<observer::UsbMonitor> monitor,
                   std::filesystem::path sysfs = "/sys");
    ~ObservedUsbBus() override;

    QJsonObject interval() override;
    QJsonObject result() override;
    QStringList takeNotices() override;

private:
    using Clock = std::chrono::steady_clock;
    /// Bus and number of a device.
    using DeviceKey = std::pair<std::int64_t, std::int64_t>;
    struct Reading : observer::UsbReading {
        Clock::time_point time = Clock::now();
    };

    static DeviceKey deviceKey(const observer::UsbStreamKey& key);
    Reading read();
    /// A camera that is plugged in again has another number: joins its streams.
    void joinStreams();
    bool isSameCamera(const observer::UsbStreamKey& ended, const observer::UsbStreamKey& later);
    /// Reads the names of devices; those that were pulled keep theirs. Notices when the bus itself
    /// is gone, which the kernel does not tell who observes it.
    void readDevices();
    const platform::UsbDevice& deviceOf(const observer::UsbStreamKey& key);
    QJsonObject identityOf(const observer::UsbStreamKey& key);
    /// Since the interval before, or of the whole time.
    QJsonObject figures(const Reading& now, bool isWhole);
    QJsonArray findings(const Reading& now);

    const QString m_name;
    const std::filesystem::path m_sysfs;
    observer::UsbObserver m_observer;
    std::map<DeviceKey, platform::UsbDevice> m_devices;
    /// Those of them that are plugged in.
    std::set<DeviceKey> m_present;
    /// Bits per second of the bus; 0 where it is unknown, and for all buses.
    double m_bitsPerSecond = 0;
    /// Whether the last reading has shown the bus.
    bool m_isPresent = false;
    QStringList m_notices;
    const Clock::time_point m_start = Clock::now();
    /// Time of the last interval.
    Clock::time_point m_last = m_start;
    std::atomic<bool> m_isEnding{false};
    std::thread m_thread;
};

} // namespace cli
