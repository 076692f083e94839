// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <cstdint>
#include <mutex>
#include <string>
#include <vector>

namespace fakecamera {

/// Addresses of the registers. The protocol defines most of those below 0x1000; the others are our
/// own. FakeCamera.xml describes them as features.
enum Register : std::uint32_t {
    Version = 0x0000,
    DeviceMode = 0x0004,
    MacHigh = 0x0008,
    MacLow = 0x000c,
    AddressOptions = 0x0010,
    AddressOption = 0x0014,
    CurrentAddress = 0x0024,
    CurrentMask = 0x0034,
    CurrentGateway = 0x0044,
    VendorName = 0x0048,
    ModelName = 0x0068,
    DeviceVersion = 0x0088,
    ManufacturerInfo = 0x00a8,
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
    DescriptionUrl = 0x0200,
    TriggerMode = 0x0300,
    TriggerSource = 0x0304,
    TriggerSoftware = 0x030c,
    InterfaceCount = 0x0600,
    PersistentAddress = 0x064c,
    PersistentMask = 0x065c,
    PersistentGateway = 0x066c,
    StreamCount = 0x0904,
    Capabilities = 0x0934,
    HeartbeatMilliseconds = 0x0938,
    TicksPerSecond = 0x0940,
    ControlPrivilege = 0x0a00,
    ControllerPort = 0x0a04,
    ControllerAddress = 0x0a14,
    StreamPort = 0x0d00,
    StreamPacketSize = 0x0d04,
    PacketDelay = 0x0d08,
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
    HasLimit = 0x103c,
    UserSetSelector = 0x1060,
    UserSetCommand = 0x1064,
    UserSetDefault = 0x1068,
    FeaturePersistence = 0x106c,
    RegistersStreaming = 0x1070,
    FramesSent = 0x1100,
    PacketsSent = 0x1108,
    PacketsResent = 0x1110,
    TestFirst = 0x1200,
    SlowCommand = 0x1224,
    TestReadOnly = 0x1298,
    AnswerDelayMilliseconds = 0x12a0,
    PendingMilliseconds = 0x12a4,
    PendingAfterCommands = 0x12a8,
    TestLast = 0x12fc,
};

/// Bytes of the register DescriptionUrl.
constexpr std::size_t descriptionUrlSize = 512;
/// Width and height of the sensor in pixels.
constexpr std::uint32_t sensorSize = 2048;
constexpr std::uint32_t pixelFormatMono8 = 0x01080001;
/// Values of AcquisitionMode.
constexpr std::uint32_t continuousAcquisition = 1;
constexpr std::uint32_t singleFrame = 2;
/// User sets, of which the first has the settings of the factory.
constexpr std::uint32_t userSets = 3;
/// Values of UserSetCommand.
constexpr std::uint32_t loadUserSet = 1;
constexpr std::uint32_t saveUserSet = 2;

/// A camera's memory: registers, texts and, behind them, the GenICam description of its features.
/// Thread-safe.
class CameraRegisters {
public:
    /// Address of the description, behind all registers.
    static constexpr std::uint32_t descriptionAddress = 0x10000;

    /// \p description is a GenICam description, an XML text.
    explicit CameraRegisters(const std::string& description);

    std::uint32_t read(std::uint32_t address) const;
    void write(std::uint32_t address, std::uint32_t value);
    /// Adds to a counter of 64 bits.
    void add(std::uint32_t address, std::uint64_t amount);
    /// Writes a text, padded with zeros to \p length bytes and cut there.
    void writeText(std::uint32_t address, std::size_t length, const std::string& text);
    /// False when the camera has no such memory.
    bool readMemory(std::uint32_t address, std::uint32_t size, std::uint8_t* data) const;
    /// False when the bytes are not all registers.
    bool writeMemory(std::uint32_t address, std::uint32_t size, const std::uint8_t* data);

    /// Bytes per frame.
    std::size_t payload() const;
    /// Image bytes per second that the camera may send: the limit, or what the packet delay allows
    /// if that is less.
    double bytesPerSecond() const;
    /// Frames per second of a free-running camera: the rate that is set, at most what sensor,
    /// exposure, link and packet delay allow. Equals the feature AcquisitionFrameRate, which does
    /// not know the packet delay.
    double frameRate() const;
    /// True when frames wait for a trigger.
    bool isTriggered() const;

private:
    double delayedBytesPerSecond() const;
    double readDouble(std::uint32_t address) const;

    mutable std::mutex m_mutex;
    /// Guarded by m_mutex. Three more zero bytes follow the description: hosts read whole words.
    std::vector<std::uint8_t> m_memory;
};

} // namespace fakecamera
