// SPDX-License-Identifier: BSD-3-Clause
#include "orvcpp/aravis/stream/StreamDestination.h"

#include "gige/BootstrapRegisters.h"
#include "gige/TestPacket.h"
#include "gvsp/Gvsp.h"
#include "orvcpp/aravis/LibraryError.h"

#include <chrono>
#include <vector>

namespace orv::aravis {

namespace {

/// Bootstrap registers.
constexpr std::uint64_t gvcpCapability = 0x0934;
constexpr std::uint32_t packetResendBit = 0x00000004;
constexpr std::uint64_t tickFrequencyHigh = 0x093C;
constexpr std::uint64_t tickFrequencyLow = 0x0940;

/// A test packet comes within a millisecond; a busy camera or switch takes longer.
constexpr std::chrono::milliseconds testWait{50};
constexpr int testTries = 3;

OrvErrorType write(ArvDevice* device, std::uint64_t address, std::uint32_t value) {
    LibraryError failure;
    if (arv_device_write_register(device, address, value, failure.out()))
        return OrvErrorSuccess;
    return failure.code() != OrvErrorSuccess ? failure.code() : OrvErrorUnspecified;
}

/// 0 when it cannot be read.
std::uint32_t read(ArvDevice* device, std::uint64_t address) {
    LibraryError failure;
    guint32 value = 0;
    return arv_device_read_register(device, address, &value, failure.out()) ? value : 0;
}

OrvErrorType setDestination(ArvDevice* device, const platform::UdpSocket& socket) {
    const OrvErrorType error = write(device, gige::streamAddressRegister, socket.localAddress());
    return error != OrvErrorSuccess ? error
                                    : write(device, gige::streamPortRegister, socket.localPort());
}

/// Makes the camera send a test packet of its packet size, which no router or adapter may split.
bool doPacketsArrive(ArvDevice* device, const platform::UdpSocket& socket) {
    const std::uint32_t setting =
        read(device, gige::streamPacketSizeRegister) | gige::doNotFragmentBit;
    const std::size_t size = setting & gige::packetSizeBits;
    for (int i = 0; size > gvsp::ipAndUdpSize && i < testTries; ++i) {
        if (write(device, gige::streamPacketSizeRegister, setting | gige::fireTestPacketBit) ==
                OrvErrorSuccess &&
            gige::awaitTestPacket(socket, size, testWait))
            return true;
    }
    return false;
}

} // namespace

OrvErrorType directStream(ArvDevice* device, const platform::UdpSocket& socket) {
    const OrvErrorType error = setDestination(device, socket);
    if (error != OrvErrorSuccess || doPacketsArrive(device, socket))
        return error;
    // Changes the destination. If it finds no size, the camera's setting stays.
    LibraryError ignored;
    arv_gv_device_auto_packet_size(ARV_GV_DEVICE(device), ignored.out());
    return setDestination(device, socket);
}

bool canResend(ArvDevice* device) {
    return (read(device, gvcpCapability) & packetResendBit) != 0;
}

std::uint64_t readTickFrequency(ArvDevice* device) {
    return std::uint64_t{read(device, tickFrequencyHigh)} << 32U | read(device, tickFrequencyLow);
}

std::size_t readPacketSize(ArvDevice* device) {
    return read(device, gige::streamPacketSizeRegister) & gige::packetSizeBits;
}

} // namespace orv::aravis
