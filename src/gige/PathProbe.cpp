// SPDX-License-Identifier: BSD-3-Clause
#include "gige/PathProbe.h"

#include "gige/BootstrapRegisters.h"
#include "gige/TestPacket.h"

#include <algorithm>

namespace gige {

namespace {

using Clock = std::chrono::steady_clock;
using namespace std::chrono_literals;

constexpr auto duration = 1s;
/// A test packet comes within a millisecond; a busy camera or switch takes longer.
constexpr auto packetWait = 40ms;
/// So many packets of one size are not lost by chance. The first size decides on a finding.
constexpr int firstTries = 5;
constexpr int furtherTries = 2;
/// The sizes that every camera can send, and that every Ethernet carries, in bytes.
constexpr std::uint32_t smallestPacket = 576;
constexpr std::uint32_t usualPacket = 1500;
/// Cameras take sizes in steps, usually of 4 bytes.
constexpr std::uint32_t sizeStep = 4;

/// This host's address towards a camera.
std::uint32_t addressTowards(std::uint32_t camera) {
    const platform::UdpSocket socket;
    return socket.connectTo(camera, controlPort) ? socket.localAddress() : 0;
}

} // namespace

PathProbe::PathProbe(std::uint32_t camera, std::uint32_t mtu)
    : m_address(addressTowards(camera)), m_mtu(std::min(mtu, packetSizeBits)), m_camera(camera) {}

PathMeasurement PathProbe::run() {
    PathMeasurement found;
    if (m_address == 0 || !m_socket.bindTo(m_address, 0))
        return found;
    const ControlResult control = m_camera.take();
    if (control != ControlResult::Taken) {
        found.result =
            control == ControlResult::Denied ? PathResult::Controlled : PathResult::NoAnswer;
        return found;
    }
    const auto settings = readSettings();
    if (!settings) {
        found.result = PathResult::Refused;
        return found;
    }
    m_end = Clock::now() + duration;
    found.packetSize = settings->packetSize & packetSizeBits;
    const bool isDirected = directStream(*settings);
    if (isDirected)
        found.largestArrived = measure(found.packetSize);
    found.result = isDirected ? PathResult::Measured : PathResult::Refused;
    if (!restore(*settings))
        found.result = PathResult::NotRestored;
    return found;
}

std::optional<PathProbe::Settings> PathProbe::readSettings() {
    const auto port = m_camera.read(streamPortRegister);
    const auto address = m_camera.read(streamAddressRegister);
    const auto packetSize = m_camera.read(streamPacketSizeRegister);
    if (!port || !address || !packetSize)
        return std::nullopt;
    return Settings{*port, *address, *packetSize & ~fireTestPacketBit};
}

bool PathProbe::directStream(const Settings& settings) {
    return m_camera.write(streamAddressRegister, m_address) &&
           m_camera.write(streamPortRegister,
                          (settings.port & ~streamPortBits) | m_socket.localPort());
}

bool PathProbe::restore(const Settings& settings) {
    // The camera resets the destination itself when nobody controls it.
    m_camera.write(streamPortRegister, settings.port);
    m_camera.write(streamAddressRegister, settings.address);
    return m_camera.write(streamPacketSizeRegister, settings.packetSize);
}

std::uint32_t PathProbe::measure(std::uint32_t packetSize) {
    const std::uint32_t first = std::min(packetSize, m_mtu);
    if (const std::uint32_t arrived = fire(first, firstTries); arrived != 0) {
        const std::uint32_t largest = first == m_mtu ? arrived : fire(m_mtu, furtherTries);
        return largest == m_mtu ? m_mtu : bisect(std::max(arrived, largest), m_mtu);
    }
    std::uint32_t tooLarge = first;
    for (const std::uint32_t size : {usualPacket, smallestPacket}) {
        if (size >= tooLarge)
            continue;
        if (const std::uint32_t arrived = fire(size, furtherTries); arrived != 0)
            return bisect(arrived, tooLarge);
        tooLarge = size;
    }
    return 0;
}

std::uint32_t PathProbe::bisect(std::uint32_t arriving, std::uint32_t tooLarge) {
    while (tooLarge > arriving + sizeStep && Clock::now() < m_end) {
        const std::uint32_t middle = (arriving + (tooLarge - arriving) / 2) / sizeStep * sizeStep;
        const std::uint32_t arrived = fire(middle, furtherTries);
        if (arrived > arriving)
            arriving = arrived;
        else
            tooLarge = middle;
    }
    return arriving;
}

std::uint32_t PathProbe::fire(std::uint32_t size, int tries) {
    for (int i = 0; i < tries; ++i) {
        if (!m_camera.write(streamPacketSizeRegister, size | fireTestPacketBit | doNotFragmentBit))
            return 0;
        const std::uint32_t sent = m_camera.read(streamPacketSizeRegister).value_or(0);
        if (awaitTestPacket(m_socket, sent & packetSizeBits, packetWait))
            return sent & packetSizeBits;
    }
    return 0;
}

} // namespace gige
