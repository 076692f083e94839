// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "gige/IpDatagram.h"

#include <cstdint>
#include <map>
#include <string>

namespace observer {

/// What is known of a camera. Empty or 0 where it has not passed yet.
struct CameraName {
    std::uint64_t macAddress = 0;
    std::string model;
    std::string serialNumber;
    std::string userName;
};

/// Learns the names of cameras from the answers that they give to other programs: to discovery, and
/// to reads of the registers that hold the names. Not thread-safe.
class CameraDirectory {
public:
    /// Takes a datagram from the control port of a camera. It may hold anything.
    void note(const gige::UdpDatagram& answer);
    /// Of the camera with this IPv4 address (host byte order).
    CameraName nameOf(std::uint32_t address) const;

private:
    CameraName& entryOf(std::uint32_t address);

    std::map<std::uint32_t, CameraName> m_names;
};

} // namespace observer
