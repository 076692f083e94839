// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "orvcpp/aravis/GObjects.h"
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

/// A camera from its opening to its closing. Thread-safe.
///
/// It watches whether the camera is still there: by its frames, and by asking when none come. A
/// camera that gives no sign of life is lost, for good: every call answers OrvErrorNotFound from
/// then on, at once.
class DeviceConnection {
public:
    /// No call waits longer for a camera's answer.
    static constexpr std::chrono::milliseconds callLimit{2800};
    /// Opening reads the camera's description, starting adjusts its packets: that takes longer than
    /// a call, as long as the camera lives.
    static constexpr std::chrono::milliseconds longCallLimit{15000};

    /// \p quiet is called each time the camera was asked in vain whether it lives, \p lost once
    /// when it is lost; both on a thread of the session's own.
    DeviceConnection(CameraRecord record, OrvAccessModeType mode, DetachableThreads& threads,
                     std::function<void()> quiet, std::function<void()> lost);
    ~DeviceConnection();
    DeviceConnection(const DeviceConnection&) = delete;
    DeviceConnection& operator=(const DeviceConnection&) = delete;

    /// To be called once, before anything else; OrvErrorInvalidAccess when another application
    /// controls the camera.
    OrvErrorType open();
    /// Gives the camera back. Every call answers OrvErrorDeviceNotOpen afterwards.
    void close();

    /// Runs \p work with the opened device on its thread. The work owns all that it touches, as it
    /// may run after the caller has given up.
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

    /// Success when calls can be made (and, for \p writing, when the camera may be changed).
    OrvErrorType admits(bool writing) const;
    bool isLost() const { return m_thread->isLost(); }
    /// A frame has come. Cheap; called on the thread that receives.
    void noteLife();

    const CameraRecord& record() const { return m_record; }
    /// Empty before the camera is open.
    const FeatureCatalogue* features() const { return m_features.get(); }

private:
    using Device = std::shared_ptr<GObjectPtr<ArvDevice>>;

    enum class Sign { None, Life, ControlLost };

    void watch();
    void lookForLife();
    /// Not by the library's own signal of a lost control: it comes on a thread that the device
    /// owns, and holds the device meanwhile, so that the device might end on its own thread.
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
    /// How the camera tells this program from others, to which it may go over when it is switched
    /// off and on; 0 where it does not. Set before the camera is open.
    std::uint32_t m_controllerPort = 0;
    std::atomic<bool> m_isOpen{false};
    std::atomic<bool> m_isClosed{false};
    /// Steady clock, nanoseconds.
    std::atomic<std::int64_t> m_lastLife{0};

    std::mutex m_watchMutex;
    std::condition_variable m_watchChanged;
    /// Guarded by the mutex.
    bool m_watchEnds = false;
    std::thread m_watch;
};

/// What a camera that nobody has opened here grants; nothing when it does not answer.
std::optional<OrvAccessModeType> permittedAccess(const CameraRecord& record);

} // namespace orv::aravis
