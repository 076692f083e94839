// SPDX-License-Identifier: BSD-3-Clause
#include "gige/PersistentIp.h"

#include "gige/BootstrapRegisters.h"
#include "gige/ControlSession.h"

#include <utility>

namespace gige {

namespace {

/// Writes the registers and compares what the camera reports afterwards.
PersistentResult writeAll(ControlSession& camera, const IpSettings& settings) {
    const auto configuration = camera.read(ipConfigurationRegister);
    if (!configuration)
        return PersistentResult::Refused;
    // Last, so that the camera never starts with half of the settings.
    const std::pair<std::uint32_t, std::uint32_t> values[] = {
        {persistentAddressRegister, settings.address},
        {persistentMaskRegister, settings.mask},
        {persistentGatewayRegister, settings.gateway},
        {ipConfigurationRegister, *configuration | persistentBit}};
    for (const auto& [address, value] : values)
        if (!camera.write(address, value))
            return PersistentResult::Refused;
    for (const auto& [address, value] : values) {
        const auto kept = camera.read(address);
        if (!kept)
            return PersistentResult::Refused;
        if (*kept != value)
            return PersistentResult::NotKept;
    }
    return PersistentResult::Written;
}

} // namespace

PersistentResult writePersistentIp(std::uint32_t camera, const IpSettings& settings) {
    ControlSession session(camera);
    switch (session.take()) {
    case ControlResult::Taken:
        return writeAll(session, settings);
    case ControlResult::Denied:
        return PersistentResult::Controlled;
    case ControlResult::NoAnswer:
        break;
    }
    return PersistentResult::NoAnswer;
}

} // namespace gige
