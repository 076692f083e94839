// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <cstdint>
#include <memory>
#include <mutex>
#include <string>

using ArvFakeCamera = struct _ArvFakeCamera;

namespace fakecamera {

/// Addresses of the registers that the program itself works with. Those below 0x1000 are given by
/// the protocol or by Aravis' fake camera, whose memory holds them all; those above are our own.
/// FakeCamera.xml makes features of them.
enum Register : std::uint32_t {
    Version = 0x0000,
    DeviceMode = 0x0004,
    MacHigh = 0x0008,
    MacLow = 0x000c,
    AddressOptions = 0x0010,
    AddressOption = 0x0014,
    CurrentAddress = 0x0024,
    CurrentMask = 0x0034,
    VendorName = 0x0048,
    ModelName = 0x0068,
    DeviceVersion = 0x0088,
    SerialNumber = 0x00d8,
    UserId = 0x00e8,
    Width = 0x0100,
    Height = 0x0104,
    SensorHeight = 0x0118,
    SensorWidth = 0x011c,
    ExposureMicroseconds = 0x0120,
    Acquisition = 0x0124,
    PixelFormat = 0x0128,
    AcquisitionMode = 0x012c,
    OffsetX = 0x0130,
    OffsetY = 0x0134,
    TriggerMode = 0x0300,
    TriggerSource = 0x0304,
    TriggerSoftware = 0x030c,
    Capabilities = 0x0934,
    HeartbeatMilliseconds = 0x0938,
    ControlPrivilege = 0x0a00,
    ControllerPort = 0x0a04,
    StreamPort = 0x0d00,
    StreamPacketSize = 0x0d04,
    StreamAddress = 0x0d18,
    LinkSpeed = 0x1000,
    LimitMinimum = 0x1004,
    LimitMaximum = 0x1008,
    LimitIncrement = 0x100c,
    Limit = 0x1010,
    LimitMode = 0x1014,
    FrameRateEnable = 0x1018,
    FrameRate = 0x1020,
    SensorMicroseconds = 0x1028,
    ExposureMode = 0x1030,
    ParamsLocked = 0x1038,
    FramesSent = 0x1100,
    PacketsSent = 0x1108,
    PacketsResent = 0x1110,
    TestFirst = 0x1200,
    SlowCommand = 0x1224,
    TestReadOnly = 0x1298,
    TestLast = 0x12fc,
};

constexpr std::uint32_t pixelFormatMono8 = 0x01080001;

/// A camera's memory: registers, texts and, behind them, the description of its features.
/// Thread-safe.
class CameraRegisters {
public:
    /// Where registers end, and the description begins.
    static constexpr std::uint32_t descriptionAddress = 0x10000;

    /// @param genicamFile the description that the camera hands out; throws std::runtime_error
    ///        where it cannot be read
    CameraRegisters(const std::string& serial, const std::string& genicamFile);

    std::uint32_t read(std::uint32_t address) const;
    void write(std::uint32_t address, std::uint32_t value);
    /// Adds to a counter of 64 bits.
    void add(std::uint32_t address, std::uint64_t amount);
    /// Writes a text, zero-padded to its length.
    void writeText(std::uint32_t address, std::size_t length, const std::string& text);
    /// False where the camera has no such memory.
    bool readMemory(std::uint32_t address, std::uint32_t size, std::uint8_t* data) const;
    bool writeMemory(std::uint32_t address, std::uint32_t size, const std::uint8_t* data);

    /// Bytes per frame.
    std::size_t payload() const;
    /// Bytes per second that the camera may send.
    double bytesPerSecond() const;
    /// Frames per second of a free-running camera: what it is asked for, and never more than
    /// sensor, exposure and link let pass. The feature AcquisitionFrameRate answers the same.
    double frameRate() const;
    /// True when frames wait for a trigger.
    bool isTriggered() const;

private:
    double readDouble(std::uint32_t address) const;

    mutable std::mutex m_mutex;
    /// Guarded by m_mutex.
    std::shared_ptr<ArvFakeCamera> m_memory;
    std::uint32_t m_end = 0;
};

} // namespace fakecamera
