// SPDX-License-Identifier: BSD-3-Clause
#include "fake-camera/WriteRules.h"

#include <algorithm>
#include <iterator>

namespace fakecamera {

namespace {

/// Words that a host may write, and the range of the value that the bits of the mask may have.
struct Rule {
    std::uint32_t first;
    std::uint32_t last;
    WriteRange range = {};
    std::uint32_t mask = 0xffffffff;
    bool lockedWhileAcquiring = false;
};

constexpr std::uint32_t allBits = 0xffffffff;
constexpr std::uint32_t pixelFormatMono16 = 0x01100007;

constexpr Rule rules[] = {
    {AddressOption, AddressOption, {0, 7}},
    {PersistentAddress, PersistentAddress},
    {PersistentMask, PersistentMask},
    {PersistentGateway, PersistentGateway},
    {UserId, UserId + 12},
    {Width, Height, {16, sensorSize}, allBits, true},
    {ExposureMicroseconds, ExposureMicroseconds, {10, 10'000'000}},
    {Acquisition, Acquisition, {0, 1}},
    {PixelFormat, PixelFormat, {pixelFormatMono8, pixelFormatMono16}, allBits, true},
    {AcquisitionMode, AcquisitionMode, {1, 2}},
    {OffsetX, OffsetY, {0, sensorSize - 16}, allBits, true},
    {TriggerMode, TriggerSoftware + 0x20},
    {HeartbeatMilliseconds, HeartbeatMilliseconds, {500, 60'000}},
    {ControlPrivilege, ControlPrivilege},
    {StreamPort, StreamPort},
    {StreamPacketSize, StreamPacketSize, {576, 9000}, protocol::packetSizeBits},
    {PacketDelay, PacketDelay, {0, 100'000'000}, allBits, true},
    {StreamAddress, StreamAddress},
    {Limit, FrameRate + 4},
    {ExposureMode, ParamsLocked},
    {UserSetSelector, UserSetSelector, {0, userSets - 1}},
    {UserSetCommand, UserSetCommand, {loadUserSet, saveUserSet}},
    {UserSetDefault, UserSetDefault, {0, userSets - 1}},
    {FeaturePersistence, RegistersStreaming, {0, 1}},
    {TestFirst, TestLast},
};

const Rule* ruleOf(std::uint32_t address) {
    const auto* const rule =
        std::find_if(std::begin(rules), std::end(rules), [address](const Rule& each) {
            return address >= each.first && address <= each.last;
        });
    return rule == std::end(rules) || address == TestReadOnly ? nullptr : rule;
}

/// The settings of the factory cannot be replaced, and none are loaded while images are sent.
bool admitsUserSetCommand(const CameraRegisters& registers, std::uint32_t command) {
    return command == saveUserSet ? registers.read(UserSetSelector) != 0
                                  : registers.read(Acquisition) == 0;
}

} // namespace

WriteRange writeRange(std::uint32_t address) {
    const Rule* const rule = ruleOf(address);
    return rule == nullptr ? WriteRange{} : rule->range;
}

protocol::Status checkWrite(const CameraRegisters& registers, std::uint32_t address,
                            std::uint32_t value) {
    if (address % 4 != 0)
        return protocol::BadAlignment;
    if (address >= CameraRegisters::descriptionAddress)
        return protocol::InvalidAddress;
    const Rule* const rule = ruleOf(address);
    if (rule == nullptr)
        return protocol::WriteProtected;
    if (rule->lockedWhileAcquiring && registers.read(Acquisition) == 1)
        return protocol::AccessDenied;
    if (address == UserSetCommand && !admitsUserSetCommand(registers, value))
        return protocol::AccessDenied;
    const std::uint32_t part = value & rule->mask;
    return part < rule->range.minimum || part > rule->range.maximum ? protocol::InvalidParameter
                                                                    : protocol::Success;
}

} // namespace fakecamera
