// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "orvcpp/simulated/Link.h"
#include "orvcpp/simulated/Scenario.h"

#include <cstdint>
#include <limits>
#include <map>

namespace orv::simulated {

/// Numbers of the entries of the automatic modes.
enum AutoEntry : std::int64_t { AutoOff = 0, AutoOnce = 1, AutoContinuous = 2 };

/// What a user set keeps of a simulated camera.
struct CameraState {
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
    std::int64_t packetSize = 0;
};

/// Settings of a simulated camera, and the rates that follow from them. Not thread-safe.
class CameraSettings : public CameraState {
public:
    explicit CameraSettings(const CameraData& data);

    /// Loads the user set with which the camera starts.
    void reset() { loadUserSet(startingUserSet); }
    /// Loads a user set. Number 0, and one in which nothing was stored, have the settings of the
    /// scenario.
    void loadUserSet(std::int64_t number);
    void storeUserSet(std::int64_t number) { m_userSets[number] = *this; }

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

    /// A software trigger that has not reached the link yet.
    bool softwareTrigger = false;
    bool isStreaming = false;
    /// Between the commands that begin and end the reading, and the writing, of all settings.
    bool isPersisting = false;
    bool isStreamingRegisters = false;

    /// Numbers of user sets.
    std::int64_t selectedUserSet = 0;
    std::int64_t startingUserSet = 0;

    const CameraData& data() const { return m_data; }

private:
    CameraState scenarioState() const;

    const CameraData m_data;
    std::map<std::int64_t, CameraState> m_userSets;
};

} // namespace orv::simulated
