// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "orvcpp/aravis/GObjects.h"
#include "orvcpp/aravis/device/DelayLimit.h"
#include "orvcpp/aravis/device/DeviceThread.h"
#include "orvcpp/aravis/device/FeatureDescription.h"
#include "orvcpp/aravis/discovery/CameraRecord.h"

#include <atomic>
#include <chrono>
#include <condition_variable>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <thread>

namespace orv::aravis {

class DetachableThreads;

/// The connection to a camera from its opening to its closing. Thread-safe.
///
/// A thread watches the camera: by its frames, or by requests while no frames come. A camera that
/// does not answer is lost for good: every call then answers OrvErrorNotFound at once. A camera
/// that only asks for more time is kept, but its calls end with OrvErrorTimeout, also those with
/// the long limit.
class DeviceConnection {
public:
    /// No call waits longer for a camera's answer.
    static constexpr std::chrono::milliseconds callLimit{2800};
    /// For opening (reads the camera's description) and starting (adjusts its packet size).
    static constexpr std::chrono::milliseconds longCallLimit{15000};

    /// \p quiet is called for each request without an answer, \p lost once when the camera is lost;
    /// both on the thread that watches.
    DeviceConnection(CameraRecord record, OrvAccessModeType mode, DetachableThreads& threads,
                     std::function<void()> quiet, std::function<void()> lost);
    ~DeviceConnection();
    DeviceConnection(const DeviceConnection&) = delete;
    DeviceConnection& operator=(const DeviceConnection&) = delete;

    /// To be called once, before anything else. OrvErrorInvalidAccess when another application
    /// controls the camera, OrvErrorFeaturesUnavailable when the library must not read its
    /// description, OrvErrorBusy while another camera's opening is stuck in the library.
    OrvErrorType open();
    /// Closes the camera. Later calls answer OrvErrorDeviceNotOpen.
    void close();

    /// Runs \p work with the opened device on its thread. It must own all data it uses, as it may
    /// run after this call has timed out.
    template <typename Work>
    OrvErrorType call(Work work, std::chrono::milliseconds limit = callLimit) const {
        if (m_isClosed)
            return OrvErrorDeviceNotOpen;
        return m_thread->call(
            [device = m_device, work]() -> OrvErrorType {
                return *device ? work(device->get()) : OrvErrorDeviceNotOpen;
            },
            limit);
    }

    /// Runs \p work on the device's thread, also for a lost camera, without waiting for it.
    void callLater(std::function<void()> work) const;

    /// Success when calls can be made; for \p writing, calls that change the camera.
    OrvErrorType admits(bool writing) const;
    bool isLost() const { return m_thread->isLost(); }
    /// A frame has arrived. Cheap; called on the receiving thread.
    void noteLife();

    const CameraRecord& record() const { return m_record; }
    /// Empty before the camera is open.
    const FeatureCatalogue* features() const { return m_features.get(); }
    /// Null before the camera is open, and for one that needs no limit of this kind. To be used on
    /// the device's thread.
    const std::shared_ptr<DelayLimit>& delayLimit() const { return m_delayLimit; }

private:
    using Device = std::shared_ptr<GObjectPtr<ArvDevice>>;

    enum class Sign { None, Busy, Life, ControlLost };

    void watch();
    void lookForLife();
    /// Ends waiting calls when the camera has done nothing for too long but ask for more time.
    void endStalledCalls();
    /// Does not use the library's signal of lost control: its handler runs on a thread that the
    /// device owns and references the device, which could then be destroyed on that thread.
    Sign ask() const;
    bool isOthers() const;
    void stopWatching();

    const CameraRecord m_record;
    const OrvAccessModeType m_mode;
    const std::shared_ptr<DeviceThread> m_thread;
    const std::function<void()> m_quiet;
    const std::function<void()> m_lost;
    /// What it points at is used on the device's thread only.
    const Device m_device = std::make_shared<GObjectPtr<ArvDevice>>();
    std::shared_ptr<const FeatureCatalogue> m_features;
    std::shared_ptr<DelayLimit> m_delayLimit;
    /// UDP port by which the camera identifies this program as its controller; another program may
    /// control it after it was switched off and on. 0 when the camera does not tell. Set before
    /// m_isOpen.
    std::uint32_t m_controllerPort = 0;
    std::atomic<bool> m_isOpen{false};
    std::atomic<bool> m_isClosed{false};
    /// Steady clock, nanoseconds.
    std::atomic<std::int64_t> m_lastLife{0};
    /// The same for a camera that does what it is asked.
    std::atomic<std::int64_t> m_lastWork{0};

    std::mutex m_watchMutex;
    std::condition_variable m_watchChanged;
    /// Guarded by the mutex.
    bool m_watchEnds = false;
    std::thread m_watch;
};

/// Access that a camera grants while it is not open here; empty when it does not answer.
std::optional<OrvAccessModeType> permittedAccess(const CameraRecord& record);

} // namespace orv::aravis
