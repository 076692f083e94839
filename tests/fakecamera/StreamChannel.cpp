// SPDX-License-Identifier: BSD-3-Clause
#include "tests/fakecamera/StreamChannel.h"

#include <pthread.h>
#include <sched.h>
#include <sys/socket.h>

#include <algorithm>
#include <cmath>

namespace fakecamera {

using namespace std::chrono_literals;

namespace {

/// What a camera may send at once after it had to wait.
constexpr auto bucket = 2ms;
/// Packets leave in groups this long, since a thread cannot be woken for each.
constexpr auto grain = 300us;
constexpr int sendBuffer = 4 << 20;
constexpr std::uint32_t singleFrame = 2;

std::uint64_t nanoseconds(std::chrono::steady_clock::time_point moment) {
    return static_cast<std::uint64_t>(std::chrono::nanoseconds(moment.time_since_epoch()).count());
}

std::chrono::nanoseconds seconds(double value) {
    return std::chrono::nanoseconds(std::llround(std::min(value, 1e6) * 1e9));
}

} // namespace

StreamChannel::StreamChannel(CameraRegisters& registers, std::uint32_t address,
                             const StreamOptions& options)
    : m_registers(registers), m_options(options) {
    m_socket.bind(socketAddress(address, 0));
    m_socket.set(SOL_SOCKET, SO_SNDBUF, sendBuffer);
    m_thread = std::thread(&StreamChannel::run, this);
}

StreamChannel::~StreamChannel() {
    {
        const std::lock_guard lock(m_mutex);
        m_ending = true;
        m_acquiring = false;
    }
    m_changed.notify_all();
    m_thread.join();
}

void StreamChannel::update() {
    const bool acquiring = m_registers.read(Acquisition) == 1 &&
                           (m_registers.read(StreamPort) & 0xffff) != 0 &&
                           m_registers.read(ControlPrivilege) != 0;
    {
        const std::lock_guard lock(m_mutex);
        m_acquiring = acquiring && !m_ending;
    }
    m_changed.notify_all();
}

void StreamChannel::resend(std::uint64_t frameId, std::uint32_t firstPacket,
                           std::uint32_t lastPacket) {
    {
        const std::lock_guard lock(m_mutex);
        m_resends.push_back({frameId, firstPacket, lastPacket});
    }
    m_changed.notify_all();
}

void StreamChannel::sendTestPacket(bool mayFragment) {
    const std::uint32_t size = m_registers.read(StreamPacketSize) & 0xffff;
    const std::vector<std::uint8_t> data(size - std::min<std::size_t>(size, protocol::ipAndUdpSize),
                                         0);
    const auto destination =
        socketAddress(m_registers.read(StreamAddress),
                      static_cast<std::uint16_t>(m_registers.read(StreamPort) & 0xffff));
    UdpSocket socket;
    socket.set(IPPROTO_IP, IP_MTU_DISCOVER, mayFragment ? IP_PMTUDISC_DONT : IP_PMTUDISC_DO);
    sendto(socket.descriptor(), data.data(), data.size(), 0,
           reinterpret_cast<const sockaddr*>(&destination), sizeof destination);
}

void StreamChannel::run() {
    // No camera waits for what else its host computes. Not everybody may have that; then it does.
    const sched_param priority{sched_get_priority_min(SCHED_RR)};
    pthread_setschedparam(pthread_self(), SCHED_RR, &priority);
    while (waitForAcquisition()) {
        acquire();
    }
}

bool StreamChannel::waitForAcquisition() {
    std::unique_lock lock(m_mutex);
    m_changed.wait(lock, [this] { return m_ending || m_acquiring; });
    m_resends.clear();
    return !m_ending;
}

void StreamChannel::acquire() {
    StreamPackets packets(m_registers, m_options.extendedIds);
    std::uint64_t frameId = m_options.firstFrameId;
    auto due = Clock::now();
    m_tokensSince = due;
    while (waitForTurn(packets, due)) {
        packets.begin(frameId, nanoseconds(Clock::now()));
        if (!sendFrame(packets)) {
            return;
        }
        m_registers.add(FramesSent, 1);
        frameId = !m_options.extendedIds && frameId == 0xffff ? 1 : frameId + 1;
        due += seconds(1 / m_registers.frameRate());
        if (m_registers.read(AcquisitionMode) == singleFrame) {
            m_registers.write(Acquisition, 0);
            update();
        }
    }
}

bool StreamChannel::waitForTurn(StreamPackets& packets, Clock::time_point& due) {
    if (!m_registers.isTriggered()) {
        // A camera that could not keep up does not send faster afterwards.
        due = std::max(due, Clock::now() - bucket);
        return waitUntil(due, packets);
    }
    while (!takeTrigger()) {
        if (!waitUntil(Clock::now() + 1ms, packets)) {
            return false;
        }
    }
    due = Clock::now();
    return true;
}

bool StreamChannel::sendFrame(StreamPackets& packets) {
    const auto perPacket =
        seconds(static_cast<double>(packets.dataSize()) / m_registers.bytesPerSecond());
    const auto group = static_cast<std::uint32_t>(std::clamp<std::int64_t>(
        std::chrono::nanoseconds(grain) / std::max<std::chrono::nanoseconds>(perPacket, 1ns), 1,
        packets.count()));
    std::uint64_t sent = 0;
    for (std::uint32_t next = 0; next < packets.count();) {
        const std::uint32_t end = next + std::min(group, packets.count() - next);
        m_tokensSince = std::max(m_tokensSince, Clock::now() - bucket) + (end - next) * perPacket;
        if (!waitUntil(m_tokensSince, packets)) {
            return false;
        }
        for (; next < end; ++next) {
            if (!isWithheld(packets.isData(next))) {
                packets.add(m_socket.descriptor(), packets.frameId(), next);
                ++sent;
            }
        }
        packets.flush(m_socket.descriptor());
    }
    m_registers.add(PacketsSent, sent);
    return true;
}

bool StreamChannel::waitUntil(Clock::time_point moment, StreamPackets& packets) {
    std::unique_lock lock(m_mutex);
    do {
        if (!m_acquiring) {
            return false;
        }
        while (!m_resends.empty()) {
            const PacketRange range = m_resends.front();
            m_resends.pop_front();
            lock.unlock();
            sendAgain(range, packets);
            lock.lock();
        }
        m_changed.wait_until(lock, moment, [this] { return !m_acquiring || !m_resends.empty(); });
    } while (!m_acquiring || !m_resends.empty());
    return true;
}

void StreamChannel::sendAgain(const PacketRange& range, StreamPackets& packets) {
    if (!packets.isRecent(range.frameId)) {
        return;
    }
    const std::uint32_t end = std::min(range.last, packets.count() - 1) + 1;
    for (std::uint32_t packet = range.first; packet < end; ++packet) {
        packets.add(m_socket.descriptor(), range.frameId, packet);
    }
    packets.flush(m_socket.descriptor());
    m_registers.add(PacketsResent, end - std::min(end, range.first));
}

bool StreamChannel::isWithheld(bool isData) {
    return isData && m_options.dropEvery != 0 && ++m_dataPackets % m_options.dropEvery == 0;
}

bool StreamChannel::takeTrigger() {
    const bool triggered = m_registers.read(TriggerSoftware) != 0;
    if (triggered) {
        m_registers.write(TriggerSoftware, 0);
    }
    return triggered;
}

} // namespace fakecamera
