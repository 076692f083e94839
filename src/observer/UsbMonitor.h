// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <chrono>
#include <filesystem>
#include <memory>
#include <system_error>

namespace observer {

/// The calls of a file of the kernel's module usbmon, which shows the transfers of a USB bus.
class UsbMonitor {
public:
    /// Opens /dev/usbmonN for reading; null with an \p error where the system refuses it.
    static std::unique_ptr<UsbMonitor> open(const std::filesystem::path& file,
                                            std::error_code& error);

    UsbMonitor() = default;
    virtual ~UsbMonitor() = default;
    UsbMonitor(const UsbMonitor&) = delete;
    UsbMonitor& operator=(const UsbMonitor&) = delete;

    /// As ioctl(), without waiting; an error is a negative error number.
    virtual int control(unsigned long request, void* argument) = 0;
    /// The same for a request that takes a number.
    virtual int control(unsigned long request, unsigned long value) = 0;
    /// Waits up to \p longest for an event.
    virtual void wait(std::chrono::milliseconds longest) = 0;
    /// Ends the wait() that waits, or else the next one. Any thread.
    virtual void wake() = 0;
    /// The clock of the events: time since 1970. Any thread.
    virtual std::chrono::nanoseconds now() const = 0;
};

} // namespace observer
