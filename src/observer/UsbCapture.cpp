// SPDX-License-Identifier: BSD-3-Clause
#include "observer/UsbCapture.h"

#include <linux/ioctl.h>

#include <algorithm>
#include <cerrno>

namespace observer {

namespace {

/// struct mon_bin_hdr of the kernel: before each event.
struct EventHeader {
    std::uint64_t id;
    std::uint8_t type;
    std::uint8_t transferType;
    std::uint8_t endpoint;
    std::uint8_t device;
    std::uint16_t bus;
    std::uint8_t setupFlag;
    /// 0 where data follow.
    std::uint8_t dataFlag;
    std::int64_t seconds;
    std::int32_t microseconds;
    std::int32_t status;
    /// Bytes that were transferred, and those of them that the ring holds.
    std::uint32_t size;
    std::uint32_t captured;
    std::array<std::uint8_t, 8> setup;
    std::int32_t interval;
    std::int32_t startFrame;
    std::uint32_t flags;
    std::uint32_t descriptors;
};
static_assert(sizeof(EventHeader) == 64);

/// struct mon_bin_get.
struct EventRequest {
    EventHeader* header;
    void* data;
    std::size_t size;
};

/// struct mon_bin_stats.
struct RingStatistics {
    std::uint32_t queued;
    /// Since the call before.
    std::uint32_t dropped;
};

constexpr unsigned long getStatistics = _IOR(0x92, 3, RingStatistics);
constexpr unsigned long setRingSize = _IO(0x92, 4);
constexpr unsigned long getEvent = _IOW(0x92, 10, EventRequest);

constexpr std::uint8_t completion = 'C';
constexpr std::uint8_t bulk = 3;
constexpr std::uint8_t directionIn = 0x80;

/// The largest ring that every kernel grants. Of a transfer the kernel copies a fifth of the ring
/// at most, so that this one holds four large transfers or 1.2 MB of small ones: a stream of 400
/// MB/s for 3 ms at least. In a smaller ring there is room for less time where the receiving
/// program asks for small transfers.
constexpr unsigned long ringSize = 1200 * 1024;

/// Events between two questions for what was missed.
constexpr std::size_t mostEvents = 256;

} // namespace

UsbCapture::UsbCapture(UsbMonitor& monitor)
    : m_monitor(monitor), m_events(mostEvents), m_asked(monitor.now()) {
    // Without the memory for it, the kernel keeps its ring of 300 KB.
    m_monitor.control(setRingSize, ringSize);
}

bool UsbCapture::receive(std::chrono::milliseconds longest) {
    m_size = 0;
    m_monitor.wait(longest);
    int error = 0;
    for (std::size_t i = 0; i < mostEvents && error == 0; ++i)
        error = takeEvent();
    takeMissed();
    return error == 0 || error == -EAGAIN || error == -EINTR;
}

int UsbCapture::takeEvent() {
    EventHeader header{};
    Event& event = m_events[m_size];
    EventRequest request{&header, event.data.data(), event.data.size()};
    if (const int error = m_monitor.control(getEvent, &request); error < 0)
        return error;
    if (header.type != completion || header.transferType != bulk ||
        (header.endpoint & directionIn) == 0)
        return 0;
    UsbTransfer& transfer = event.transfer;
    transfer.bus = header.bus;
    transfer.device = header.device;
    transfer.endpoint = header.endpoint;
    transfer.status = header.status;
    transfer.size = header.size;
    transfer.captured =
        header.dataFlag == 0 ? std::min<std::size_t>(header.captured, event.data.size()) : 0;
    transfer.arrival =
        std::chrono::seconds(header.seconds) + std::chrono::microseconds(header.microseconds);
    ++m_size;
    return 0;
}

void UsbCapture::takeMissed() {
    RingStatistics statistics{};
    const std::chrono::nanoseconds now = m_monitor.now();
    m_missed = {};
    if (m_monitor.control(getStatistics, &statistics) < 0)
        return;
    m_missed = {statistics.dropped, m_asked, now};
    // Events tell microseconds.
    m_asked = now - std::chrono::microseconds(1);
}

UsbTransfer UsbCapture::at(std::size_t index) const {
    UsbTransfer transfer = m_events[index].transfer;
    transfer.data = m_events[index].data.data();
    return transfer;
}

} // namespace observer
