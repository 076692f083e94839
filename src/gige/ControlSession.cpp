// SPDX-License-Identifier: BSD-3-Clause
#include "gige/ControlSession.h"

#include "gige/BootstrapRegisters.h"

namespace gige {

namespace {

constexpr GvcpPatience controlPatience{std::chrono::milliseconds(500), 3};
/// Value of the privilege register: this program writes, others may read.
constexpr std::uint32_t controlAccess = 2;
constexpr std::uint32_t noAccess = 0;

} // namespace

ControlSession::ControlSession(std::uint32_t address) : m_camera(address, controlPatience) {}

ControlSession::~ControlSession() {
    if (m_isTaken)
        write(privilegeRegister, noAccess);
}

ControlResult ControlSession::take() {
    const auto answer = m_camera.writeRegister(privilegeRegister, controlAccess);
    if (!answer)
        return ControlResult::NoAnswer;
    m_isTaken = answer->status == 0;
    return m_isTaken ? ControlResult::Taken : ControlResult::Denied;
}

std::optional<std::uint32_t> ControlSession::read(std::uint32_t address) {
    const auto answer = m_camera.readRegister(address);
    return answer ? Gvcp::value(*answer) : std::nullopt;
}

bool ControlSession::write(std::uint32_t address, std::uint32_t value) {
    const auto answer = m_camera.writeRegister(address, value);
    return answer && answer->status == 0;
}

} // namespace gige
