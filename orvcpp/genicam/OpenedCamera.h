// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "orvcpp/genicam/Acquisition.h"
#include "orvcpp/genicam/GenicamFeature.h"
#include "orvcpp/memory/FeatureModule.h"

#include "OrvCPP/LocalDevice.h"
#include "OrvCPP/Stream.h"

#include <memory>
#include <mutex>
#include <optional>
#include <vector>

namespace orv::genicam {

/// The acquisition of an opened camera, if there is one. Thread-safe.
class Streaming {
public:
    std::shared_ptr<Acquisition> acquisition() const;
    void begin(std::shared_ptr<Acquisition> begun);
    /// Takes the running acquisition; empty when there is none.
    std::shared_ptr<Acquisition> end();
    bool isRunning() const { return acquisition() != nullptr; }
    /// One of the library's counts of the running acquisition, or of the one before.
    std::int64_t count(const std::string& name) const;
    /// To be called when the acquisition that was ended has stopped.
    void keep(const Acquisition& stopped);
    std::optional<std::uint64_t> previousId() const;

private:
    mutable std::mutex m_mutex;
    /// All below guarded by the mutex.
    std::shared_ptr<Acquisition> m_acquisition;
    std::vector<StreamCount> m_counts;
    std::optional<std::uint64_t> m_previousId;
};

/// All that there is of a camera while it is open.
struct OpenedCamera {
    std::shared_ptr<DeviceSession> device;
    StreamPath path;
    std::shared_ptr<Streaming> streaming;
    std::shared_ptr<FeatureAccess> features;
    std::shared_ptr<OrvCPP::LocalDevice> localDevice;
    std::shared_ptr<OrvCPP::Stream> stream;
    /// What the features of the local device and of the stream lie in.
    std::vector<std::shared_ptr<FeatureModule>> modules;

    /// To be called without a lock when the camera is closed.
    void forgetObservers() const;
};

/// Makes them around an opened device.
std::shared_ptr<OpenedCamera> makeOpenedCamera(const std::shared_ptr<Session>& calls,
                                               std::shared_ptr<DeviceSession> device,
                                               PacketSocket packetSocket, const std::string& id);

} // namespace orv::genicam
