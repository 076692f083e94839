// SPDX-License-Identifier: BSD-3-Clause
#include "fake-camera/CameraAddress.h"

#include "fake-camera/Protocol.h"
#include "platform/Ipv4Address.h"
#include "platform/UdpSocket.h"

#include <cerrno>
#include <cstring>
#include <fstream>
#include <system_error>
#include <utility>

#include <net/if.h>
#include <sys/ioctl.h>

namespace fakecamera {

namespace {

constexpr std::uint32_t firstMask = 0xffffff00;
constexpr Register persistentRegisters[] = {AddressOption, PersistentAddress, PersistentMask,
                                            PersistentGateway};

void setOnAdapter(const std::string& adapter, unsigned long operation, std::uint32_t address) {
    ifreq request{};
    adapter.copy(request.ifr_name, IF_NAMESIZE - 1);
    const sockaddr_in value = platform::socketAddress(address, 0);
    std::memcpy(&request.ifr_addr, &value, sizeof value);
    const platform::UdpSocket socket;
    if (ioctl(socket.handle(), operation, &request) != 0)
        throw std::system_error(errno, std::generic_category(), "--adapter: " + adapter);
}

} // namespace

CameraAddress::CameraAddress(CameraRegisters& registers, std::string adapter, std::string memory)
    : m_registers(registers), m_adapter(std::move(adapter)), m_memory(std::move(memory)) {}

void CameraAddress::begin(std::uint32_t address) {
    m_registers.write(AddressOptions, protocol::persistentIp | protocol::linkLocalIp);
    m_registers.write(AddressOption, protocol::linkLocalIp);
    std::ifstream file(m_memory);
    std::uint32_t value = 0;
    for (const Register each : persistentRegisters)
        if (file >> value)
            m_registers.write(each, value);
    const bool isPersistent = (m_registers.read(AddressOption) & protocol::persistentIp) != 0;
    const auto first = [&](Register persistent, std::uint32_t otherwise) {
        return isPersistent ? m_registers.read(persistent) : otherwise;
    };
    m_registers.write(CurrentAddress, first(PersistentAddress, address));
    m_registers.write(CurrentMask, first(PersistentMask, firstMask));
    m_registers.write(CurrentGateway, first(PersistentGateway, 0));
    takeCurrent();
}

bool CameraAddress::canTake(std::uint32_t address, std::uint32_t mask) const {
    if (address == 0 || mask == 0)
        return false;
    const platform::UdpSocket socket;
    return !m_adapter.empty() || socket.bindTo(address, 0);
}

void CameraAddress::takeCurrent() const {
    if (m_adapter.empty())
        return;
    setOnAdapter(m_adapter, SIOCSIFADDR, m_registers.read(CurrentAddress));
    setOnAdapter(m_adapter, SIOCSIFNETMASK, m_registers.read(CurrentMask));
}

void CameraAddress::remember() const {
    if (m_memory.empty())
        return;
    std::ofstream file(m_memory);
    for (const Register each : persistentRegisters)
        file << m_registers.read(each) << '\n';
}

} // namespace fakecamera
