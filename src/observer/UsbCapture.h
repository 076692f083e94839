// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "observer/UsbMonitor.h"
#include "observer/UsbStream.h"
#include "observer/UsbTransfer.h"

#include <array>
#include <chrono>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <vector>

namespace observer {

/// Events that the kernel had no room for, until it was asked.
struct UsbMiss {
    /// 0: none was missed.
    std::uint64_t events = 0;
    /// They ended at some time between these two, since 1970.
    std::chrono::nanoseconds since{0};
    std::chrono::nanoseconds until{0};
};

/// Reads the bulk transfers from devices to this host by the binary interface of usbmon
/// (Documentation/usb/usbmon.rst of the kernel). Not thread-safe.
class UsbCapture {
public:
    /// Sets the kernel's ring up.
    explicit UsbCapture(UsbMonitor& monitor);

    /// Waits up to \p longest for transfers, and takes a limited number of those that have ended.
    /// False after an error. A bus that was removed gives no error, only no more transfers.
    bool receive(std::chrono::milliseconds longest);
    /// What receive() has missed, to be noted before its transfers are judged.
    const UsbMiss& missed() const { return m_missed; }
    std::size_t size() const { return m_size; }
    /// Of those that receive() took; \p index is below size(). Valid until the next receive().
    UsbTransfer at(std::size_t index) const;

private:
    struct Event {
        UsbTransfer transfer;
        std::array<std::uint8_t, UsbStream::headerSize> data{};
    };

    /// Takes one event, and counts it where it is a transfer that has brought data. A negative
    /// error number where there is none.
    int takeEvent();
    void takeMissed();

    UsbMonitor& m_monitor;
    std::vector<Event> m_events;
    std::size_t m_size = 0;
    UsbMiss m_missed;
    /// When the kernel was asked last for what it dropped.
    std::chrono::nanoseconds m_asked;
};

} // namespace observer
