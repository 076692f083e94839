// SPDX-License-Identifier: BSD-3-Clause
#include "fake-camera/StreamChannel.h"

#include "platform/Ipv4Address.h"

#include <pthread.h>
#include <sched.h>
#include <sys/socket.h>

#include <algorithm>
#include <cerrno>
#include <cmath>
#include <system_error>

namespace fakecamera {

using namespace std::chrono_literals;

namespace {

/// Tokens that a camera may collect while it cannot send.
constexpr auto bucket = 2ms;
/// Packets leave in groups of this time: a thread cannot be woken for each.
constexpr auto grain = 300us;
constexpr int sendBuffer = 4 << 20;
/// Requests for resending that wait; others are ignored.
constexpr std::size_t mostResends = 1024;

std::uint64_t nanoseconds(std::chrono::steady_clock::time_point moment) {
    return static_cast<std::uint64_t>(std::chrono::nanoseconds(moment.time_since_epoch()).count());
}

std::chrono::nanoseconds seconds(double value) {
    return std::chrono::nanoseconds(std::llround(std::min(value, 1e6) * 1e9));
}

} // namespace

StreamChannel::StreamChannel(CameraRegisters& registers, std::uint32_t address,
                             const StreamOptions& options)
    : m_registers(registers), m_address(address), m_options(options) {
    if (!m_socket.bindTo(address, 0))
        throw std::system_error(errno, std::generic_category(), "stream socket");
    m_socket.set(SOL_SOCKET, SO_SNDBUF, sendBuffer);
    m_thread = std::thread(&StreamChannel::run, this);
}

StreamChannel::~StreamChannel() {
    {
        const std::lock_guard lock(m_mutex);
        m_ending = true;
        m_asked = 0;
    }
    m_changed.notify_all();
    m_thread.join();
}

void StreamChannel::update() {
    {
        const std::lock_guard lock(m_mutex);
        const bool acquiring = m_registers.read(Acquisition) == 1 &&
                               (m_registers.read(StreamPort) & 0xffff) != 0 &&
                               m_registers.read(ControlPrivilege) != 0;
        if (!acquiring)
            m_asked = 0;
        else if (m_asked == 0)
            m_asked = ++m_started;
    }
    m_changed.notify_all();
}

void StreamChannel::resend(std::uint64_t frameId, std::uint32_t firstPacket,
                           std::uint32_t lastPacket) {
    if (firstPacket > lastPacket)
        return;
    {
        const std::lock_guard lock(m_mutex);
        if (m_resends.size() == mostResends)
            return;
        m_resends.push_back({frameId, firstPacket, lastPacket});
    }
    m_changed.notify_all();
}

void StreamChannel::sendTestPacket(bool mayFragment) {
    const std::uint32_t size = m_registers.read(StreamPacketSize) & protocol::packetSizeBits;
    const std::vector<std::uint8_t> data(size - std::min<std::size_t>(size, protocol::ipAndUdpSize),
                                         0);
    const auto destination =
        platform::socketAddress(m_registers.read(StreamAddress),
                                static_cast<std::uint16_t>(m_registers.read(StreamPort) & 0xffff));
    const platform::UdpSocket socket;
    socket.bindTo(m_address, 0);
    socket.set(IPPROTO_IP, IP_MTU_DISCOVER, mayFragment ? IP_PMTUDISC_DONT : IP_PMTUDISC_DO);
    sendto(socket.handle(), data.data(), data.size(), 0,
           reinterpret_cast<const sockaddr*>(&destination), sizeof destination);
}

void StreamChannel::run() {
    // Real-time priority, so that other programs of this computer do not delay frames. Without the
    // permission the thread keeps the normal priority.
    const sched_param priority{sched_get_priority_min(SCHED_RR)};
    pthread_setschedparam(pthread_self(), SCHED_RR, &priority);
    while (waitForAcquisition())
        acquire();
}

bool StreamChannel::waitForAcquisition() {
    std::unique_lock lock(m_mutex);
    while (!m_ending && m_asked == 0) {
        m_changed.wait(lock, [this] { return m_ending || m_asked != 0 || !m_resends.empty(); });
        sendAllAgain(lock);
    }
    m_current = m_asked;
    return !m_ending;
}

void StreamChannel::acquire() {
    m_packets.emplace(m_registers, m_options.extendedIds, m_options.parts, m_options.lossPercent,
                      m_socket);
    std::uint64_t frameId = m_options.firstFrameId;
    std::uint64_t frames = 0;
    auto due = Clock::now();
    m_tokensSince = due;
    while (waitForTurn(due)) {
        m_packets->begin(frameId, nanoseconds(Clock::now()));
        if (!sendFrame())
            return;
        m_registers.add(FramesSent, 1);
        frameId = following(frameId);
        if (m_options.skipEvery != 0 && ++frames % m_options.skipEvery == 0)
            frameId = following(frameId);
        due += seconds(1 / m_registers.frameRate());
        if (m_registers.read(AcquisitionMode) == singleFrame) {
            m_registers.write(Acquisition, 0);
            update();
        }
    }
}

std::uint64_t StreamChannel::following(std::uint64_t frameId) const {
    return !m_options.extendedIds && frameId == 0xffff ? 1 : frameId + 1;
}

bool StreamChannel::waitForTurn(Clock::time_point& due) {
    if (!m_registers.isTriggered()) {
        // A camera that could not keep up does not send faster afterwards.
        due = std::max(due, Clock::now() - bucket);
        return waitUntil(due);
    }
    while (!takeTrigger())
        if (!waitUntil(Clock::now() + 1ms))
            return false;
    due = Clock::now();
    return true;
}

bool StreamChannel::sendFrame() {
    const std::size_t atOnce = bytesAtOnce();
    while (!m_packets->isDone()) {
        std::uint32_t end = m_packets->next();
        std::size_t bytes = 0;
        do {
            bytes += m_packets->imageBytes(end++);
        } while (end < m_packets->count() && bytes + m_packets->imageBytes(end) <= atOnce);
        if (!waitUntil(takeTokens(bytes)))
            return false;
        sendGroup(end);
    }
    return true;
}

void StreamChannel::sendGroup(std::uint32_t end) {
    std::uint64_t sent = 0;
    while (m_packets->next() < end) {
        if (isDropped()) {
            m_packets->dropNext();
        } else {
            m_packets->addNext();
            ++sent;
        }
    }
    m_packets->flush();
    m_registers.add(PacketsSent, sent);
}

StreamChannel::Clock::time_point StreamChannel::takeTokens(std::size_t bytes) {
    m_tokensSince = std::max(m_tokensSince, Clock::now() - bucket) +
                    seconds(static_cast<double>(bytes) / m_registers.bytesPerSecond());
    return m_tokensSince;
}

bool StreamChannel::waitUntil(Clock::time_point moment) {
    std::unique_lock lock(m_mutex);
    do {
        sendAllAgain(lock);
        m_changed.wait_until(lock, moment,
                             [this] { return m_asked != m_current || !m_resends.empty(); });
    } while (m_asked == m_current && !m_resends.empty());
    return m_asked == m_current;
}

void StreamChannel::sendAllAgain(std::unique_lock<std::mutex>& lock) {
    const std::uint64_t asked = m_asked;
    const auto isOver = [&] {
        return m_ending || m_asked != asked;
    };
    while (!isOver() && !m_resends.empty()) {
        PacketRange range = m_resends.front();
        m_resends.pop_front();
        lock.unlock();
        const bool hasMore = sendAgain(range);
        lock.lock();
        if (hasMore)
            m_resends.push_front(range);
        m_changed.wait_until(lock, m_tokensSince, isOver);
    }
}

bool StreamChannel::sendAgain(PacketRange& range) {
    if (!m_packets)
        return false;
    const std::size_t packetSize = std::max<std::size_t>(m_packets->imageBytes(1), 1);
    const auto atOnce =
        static_cast<std::uint32_t>(std::max(bytesAtOnce() / packetSize, std::size_t{1}));
    const std::uint32_t last = range.first + std::min(range.last - range.first, atOnce - 1);
    const std::uint32_t sent = m_packets->addAgain(range.frameId, range.first, last);
    m_packets->flush();
    takeTokens(sent * packetSize);
    m_registers.add(PacketsResent, sent);
    range.first += sent;
    return sent == atOnce && range.first <= range.last;
}

std::size_t StreamChannel::bytesAtOnce() const {
    return static_cast<std::size_t>(m_registers.bytesPerSecond() *
                                    std::chrono::duration<double>(grain).count());
}

bool StreamChannel::isDropped() {
    const bool isData = m_packets->imageBytes(m_packets->next()) != 0;
    return isData && m_options.dropEvery != 0 && ++m_dataPackets % m_options.dropEvery == 0;
}

bool StreamChannel::takeTrigger() {
    const bool triggered = m_registers.read(TriggerSoftware) != 0;
    if (triggered)
        m_registers.write(TriggerSoftware, 0);
    return triggered;
}

} // namespace fakecamera
