// SPDX-License-Identifier: BSD-3-Clause
#include "observer/UsbMonitor.h"

#include "platform/Descriptor.h"

#include <fcntl.h>
#include <poll.h>
#include <sys/eventfd.h>
#include <sys/ioctl.h>

#include <array>
#include <cerrno>
#include <cstdint>

namespace observer {

namespace {

class UsbMonitorFile final : public UsbMonitor {
public:
    explicit UsbMonitorFile(const char* file)
        : m_file(::open(file, O_RDONLY | O_NONBLOCK | O_CLOEXEC)) {}

    bool isOpen() const { return m_file.isOpen() && m_wake.isOpen(); }

    int control(unsigned long request, void* argument) override {
        return result(ioctl(m_file.handle(), request, argument));
    }
    int control(unsigned long request, unsigned long value) override {
        return result(ioctl(m_file.handle(), request, value));
    }

    void wait(std::chrono::milliseconds longest) override {
        std::array<pollfd, 2> files{{{m_file.handle(), POLLIN, 0}, {m_wake.handle(), POLLIN, 0}}};
        poll(files.data(), files.size(), static_cast<int>(longest.count()));
        eventfd_t count = 0;
        if (files[1].revents != 0)
            eventfd_read(m_wake.handle(), &count);
    }
    void wake() override { eventfd_write(m_wake.handle(), 1); }
    std::chrono::nanoseconds now() const override {
        return std::chrono::system_clock::now().time_since_epoch();
    }

private:
    static int result(int value) { return value < 0 ? -errno : value; }

    const platform::Descriptor m_file;
    const platform::Descriptor m_wake{eventfd(0, EFD_NONBLOCK | EFD_CLOEXEC)};
};

} // namespace

std::unique_ptr<UsbMonitor> UsbMonitor::open(const std::filesystem::path& file,
                                             std::error_code& error) {
    auto monitor = std::make_unique<UsbMonitorFile>(file.c_str());
    if (monitor->isOpen()) {
        error.clear();
        return monitor;
    }
    error.assign(errno, std::generic_category());
    return nullptr;
}

} // namespace observer
