// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "OrvCPP/Camera.h"
#include "OrvCPP/Interface.h"
#include "OrvCPP/TransportLayer.h"
#include "OrvSimulation/Simulation.h"

#include <memory>
#include <string>
#include <vector>

namespace orv {

/// An object that a provider offers, with the texts by which it is looked up.
template <typename Object> struct Listed {
    std::shared_ptr<Object> object;
    std::string id;
    /// Another ID, unique across transport layers; may be empty.
    std::string extendedId;
};

/// The system object as providers use it. Thread-safe. To be called without a lock, since it calls
/// the user's observers and camera factory.
class ProviderHost {
public:
    virtual ~ProviderHost() = default;

    /// The object to hand out for a camera of the provider: the camera factory's, if there is one.
    virtual std::shared_ptr<OrvCPP::Camera>
    publicCamera(const std::shared_ptr<OrvCPP::Camera>& found) = 0;
    /// Tells the observers; to be called on a thread of the provider's (SdkThread::Events).
    virtual void cameraListChanged(const std::shared_ptr<OrvCPP::Camera>& found,
                                   OrvUpdateTriggerType reason) = 0;
};

/// A source of cameras: simulated ones, or real ones. Thread-safe.
///
/// The constructor has no effect outside the object, so that providers can be discarded when
/// another one cannot be made. start() starts threads.
class Provider {
public:
    virtual ~Provider() = default;

    virtual OrvErrorType start() = 0;
    /// Closes every camera and ends every thread of the provider. Its objects answer
    /// OrvErrorApiNotStarted from then on.
    virtual void shutDown() = 0;

    virtual std::vector<Listed<OrvCPP::TransportLayer>> transportLayers() const = 0;
    virtual std::vector<Listed<OrvCPP::Interface>> interfaces() const = 0;
    /// Cameras that are present, as the provider made them.
    virtual std::vector<Listed<OrvCPP::Camera>> cameras() const = 0;

    /// Host on which a simulation runs; empty for real cameras.
    virtual OrvCPP::SimulatedHost simulatedHost() const { return {}; }
    /// Plugs or unplugs a simulated camera; false when there is none of that ID.
    virtual bool setCameraPlugged(const std::string& /*id*/, bool /*plugged*/) { return false; }
};

} // namespace orv
