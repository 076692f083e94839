// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "observer/UsbMonitor.h"

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <cstdint>
#include <cstring>
#include <deque>
#include <string>
#include <thread>
#include <vector>

/// USB3 Vision cameras by hand, as the kernel's usbmon shows their transfers.
namespace usbscript {

using Bytes = std::vector<std::uint8_t>;
using namespace std::chrono_literals;

inline void put(Bytes& bytes, std::size_t offset, std::uint64_t value, std::size_t size) {
    for (std::size_t i = 0; i < size; ++i)
        bytes.at(offset + i) = static_cast<std::uint8_t>(value >> (8 * i));
}

constexpr std::uint64_t payload = 3000;

inline Bytes block(const std::string& magic, std::uint64_t id, std::size_t size) {
    Bytes bytes(size);
    std::copy(magic.begin(), magic.end(), bytes.begin());
    put(bytes, 6, size, 2);
    put(bytes, 8, id, 8);
    return bytes;
}
inline Bytes leader(std::uint64_t id) {
    return block("U3VL", id, 52);
}
inline Bytes trailer(std::uint64_t id, std::uint16_t status = 0, std::uint64_t size = payload) {
    Bytes bytes = block("U3VT", id, 32);
    put(bytes, 16, status, 2);
    put(bytes, 20, size, 8);
    return bytes;
}

/// A transfer, by default of a completed bulk one to the host. Its members are those of the kernel.
struct Event {
    Bytes data;
    std::int32_t status = 0;
    char type = 'C';
    std::uint8_t transferType = 3;
    std::uint8_t endpoint = 0x81;
    std::uint8_t device = 7;
    std::uint16_t bus = 2;
    /// Nothing of the data was captured.
    char dataFlag = 0;

    Bytes header(std::chrono::nanoseconds time) const {
        Bytes bytes(64, 0xEE);
        bytes[8] = static_cast<std::uint8_t>(type);
        bytes[9] = transferType;
        bytes[10] = endpoint;
        bytes[11] = device;
        put(bytes, 12, bus, 2);
        bytes[15] = static_cast<std::uint8_t>(dataFlag);
        put(bytes, 16, static_cast<std::uint64_t>(time / 1s), 8);
        put(bytes, 24, static_cast<std::uint64_t>(time % 1s / 1us), 4);
        put(bytes, 28, static_cast<std::uint32_t>(status), 4);
        put(bytes, 32, data.size(), 4);
        put(bytes, 36, dataFlag == 0 ? data.size() : 0, 4);
        return bytes;
    }
};

/// A usbmon file with the events that a test sends; 100 us pass with each.
class Monitor final : public observer::UsbMonitor {
public:
    void send(const Event& event) {
        time += 100us;
        m_events.push_back({event.header(time), event.data});
    }
    void sendFrame(std::uint64_t id, Event event = {}) {
        for (const Bytes& data : {leader(id), Bytes(2000), Bytes(1000), trailer(id)}) {
            event.data = data;
            send(event);
        }
    }

    /// The numbers of the requests on computers of 64 bits.
    int control(unsigned long request, void* argument) override {
        if (request == 0x80089203) {
            const std::uint32_t statistics[]{0, dropped};
            std::memcpy(argument, statistics, sizeof statistics);
            dropped = 0;
            return 0;
        }
        if (request != 0x4018920A)
            return -ENOTTY;
        if (m_events.empty())
            return end;
        struct {
            void* header;
            void* data;
            std::size_t size;
        } wanted{};
        std::memcpy(&wanted, argument, sizeof wanted);
        const auto [header, data] = m_events.front();
        m_events.pop_front();
        std::memcpy(wanted.header, header.data(), header.size());
        std::copy_n(data.begin(), std::min(wanted.size, data.size()),
                    static_cast<std::uint8_t*>(wanted.data));
        return 0;
    }
    int control(unsigned long request, unsigned long value) override {
        if (request != 0x9204)
            return -ENOTTY;
        ringSize = value;
        return 0;
    }
    void wait(std::chrono::milliseconds longest) override {
        if (m_events.empty())
            std::this_thread::sleep_for(std::min(longest, std::chrono::milliseconds(1)));
    }
    void wake() override {}
    std::chrono::nanoseconds now() const override { return time; }
    bool isEmpty() const { return m_events.empty(); }

    std::chrono::nanoseconds time = 1'700'000'000s;
    std::uint32_t dropped = 0;
    /// What the observer asked for; the kernel grants this much at most.
    unsigned long ringSize = 0;
    /// What the kernel says where there is no event.
    int end = -EAGAIN;

private:
    struct Sent {
        Bytes header;
        Bytes data;
    };
    std::deque<Sent> m_events;
};

} // namespace usbscript
