// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "orvcpp/core/Device.h"
#include "orvcpp/core/ProviderCalls.h"
#include "orvcpp/simulated/CameraSettings.h"

#include "OrvCPP/Camera.h"

#include <memory>
#include <mutex>

namespace orv::simulated {

/// A simulated camera: settings, access and acquisition. SimulatedCamera is the SDK's object for
/// it. Thread-safe.
///
/// Lock order: m_control, mutex(), the link's mutex. Callbacks run without any of them.
class CameraDevice final : public Device {
public:
    CameraDevice(std::shared_ptr<ProviderCalls> calls, std::shared_ptr<Link> link,
                 std::shared_ptr<PatternStore> patterns, const CameraData& data, bool isUsb);

    OrvErrorType open(OrvAccessModeType mode);
    OrvErrorType close();
    OrvErrorType start(int bufferCount, const std::shared_ptr<OrvCPP::IFrameObserver>& observer);
    OrvErrorType stop();

    OrvAccessModeType permittedAccess();
    bool isPlugged();
    /// True when this is a change. Plugging in resets the image, acquisition and bandwidth settings
    /// to those of power-up.
    bool setPlugged(bool plugged);
    /// The error of a call that needs the camera open.
    OrvErrorType checkOpen();
    bool isUsb() const { return m_isUsb; }

    OrvErrorType admits(bool writing) const override;
    void changed() override;

    /// Guarded by mutex(), as it is while a feature of the camera is read or written.
    CameraSettings& settings() { return m_settings; }
    StreamStatistics& statistics() { return *m_statistics; }
    const CameraData& data() const { return m_settings.data(); }

private:
    OrvErrorType mayOpen(OrvAccessModeType mode) const;
    OrvErrorType stopStreaming();
    FrameSourceSettings sourceSettings(int bufferCount) const;

    const std::shared_ptr<ProviderCalls> m_calls;
    const std::shared_ptr<Link> m_link;
    const std::shared_ptr<PatternStore> m_patterns;
    const std::shared_ptr<StreamStatistics> m_statistics = std::make_shared<StreamStatistics>();
    const bool m_isUsb;

    /// Held while opening, closing, starting and stopping.
    std::mutex m_control;
    /// All below guarded by mutex().
    CameraSettings m_settings;
    OrvAccessModeType m_mode = OrvAccessModeNone;
    bool m_isPlugged = true;
    /// Unplugged while open, and not closed since.
    bool m_isGone = false;
    std::shared_ptr<FrameSource> m_source;
};

} // namespace orv::simulated
