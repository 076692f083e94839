// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "orvcpp/simulated/Link.h"
#include "orvcpp/simulated/Scenario.h"

#include <cstdint>
#include <limits>

namespace orv::simulated {

/// Numbers of the entries of the automatic modes.
enum AutoEntry : std::int64_t { AutoOff = 0, AutoOnce = 1, AutoContinuous = 2 };

/// Settings of a simulated camera, and the rates that follow from them. Not thread-safe.
class CameraSettings {
public:
    explicit CameraSettings(const CameraData& data);

    /// Back to the settings of the scenario.
    void reset();

    std::int64_t maximumWidth() const { return m_data.sensorWidth / binningHorizontal; }
    std::int64_t maximumHeight() const { return m_data.sensorHeight / binningVertical; }
    /// Shrinks the region to what the sensor has left after binning.
    void fitRegion();

    OrvPixelFormatType format() const { return static_cast<OrvPixelFormatType>(pixelFormat); }
    /// Bytes of an image.
    std::int64_t payloadSize() const;
    /// Bytes per second that the camera's cable carries.
    std::int64_t linkSpeed() const;
    /// Bytes per second that the camera may use.
    std::int64_t usableBandwidth() const;
    /// Frames per second that sensor, exposure and bandwidth allow.
    double possibleFrameRate() const;
    /// possibleFrameRate(), limited by the user's frame rate when that is enabled.
    double frameRate() const;
    bool isTriggered() const;
    Demand demand() const;

    std::int64_t width = 0;
    std::int64_t height = 0;
    std::int64_t offsetX = 0;
    std::int64_t offsetY = 0;
    std::int64_t binningHorizontal = 1;
    std::int64_t binningVertical = 1;
    std::int64_t pixelFormat = 0;
    /// Microseconds.
    double exposureTime = 0;
    std::int64_t exposureMode = ExposureModeTimed;
    std::int64_t exposureAuto = AutoOff;
    bool frameRateEnabled = false;
    double userFrameRate = 0;
    /// Bytes per second.
    std::int64_t bandwidth = 0;
    /// Switches of the bandwidth limit; a camera has the one that belongs to its feature.
    std::int64_t bandwidthLimited = 1;
    bool frameRateConstrained = true;
    std::int64_t triggerMode = 0;
    std::int64_t triggerSource = TriggerSourceSoftware;
    /// A software trigger that has not reached the link yet.
    bool softwareTrigger = false;
    std::int64_t packetSize = 0;
    bool isStreaming = false;
    /// Between the commands that begin and end the reading, and the writing, of all settings.
    bool isPersisting = false;
    bool isStreamingRegisters = false;

    const CameraData& data() const { return m_data; }

private:
    const CameraData m_data;
};

} // namespace orv::simulated
