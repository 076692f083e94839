// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "cli/ObservedInterface.h"
#include "observer/UsbObserver.h"
#include "platform/UsbDevice.h"

#include <QString>

#include <atomic>
#include <chrono>
#include <cstdint>
#include <filesystem>
#include <map>
#include <memory>
#include <thread>
#include <tuple>

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

private:
    using Clock = std::chrono::steady_clock;
    /// Bus and number of a device.
    using DeviceKey = std::pair<std::int64_t, std::int64_t>;
    /// Device and endpoint.
    using StreamKey = std::pair<DeviceKey, std::uint8_t>;

    struct Reading {
        Clock::time_point time = Clock::now();
        std::map<StreamKey, observer::UsbStreamReading> streams;
        std::uint64_t missedEvents = 0;
    };

    static StreamKey keyOf(const observer::UsbStreamReading& stream);
    Reading read();
    /// Reads the names of devices; those that were pulled keep theirs.
    void readDevices();
    const platform::UsbDevice& deviceOf(const StreamKey& key);
    QJsonObject identityOf(const StreamKey& key);
    QJsonObject figures(const Reading& since, const Reading& until);
    QJsonArray findings(const Reading& now);

    const QString m_name;
    const std::filesystem::path m_sysfs;
    observer::UsbObserver m_observer;
    std::map<DeviceKey, platform::UsbDevice> m_devices;
    /// Bits per second of the bus; 0 where it is unknown, and for all buses.
    double m_bitsPerSecond = 0;
    Reading m_last;
    const Clock::time_point m_start = m_last.time;
    std::map<StreamKey, observer::FrameTiming> m_allTiming;
    std::atomic<bool> m_isEnding{false};
    std::thread m_thread;
};

} // namespace cli
