// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "engine/CameraList.h"

#include <cstddef>
#include <cstdint>
#include <deque>
#include <memory>
#include <string>

/// Divides the bandwidth of one interface among its cameras: locked cameras keep theirs, cameras
/// that need less than an equal share get what they need, and the others share what is left,
/// triggered ones last. Bandwidths are in bytes per second. Made for one run; bound to the GUI
/// thread.
class InterfaceAutoSet {
public:
    /// \p interfaceId begins messages. \p available is the usable bandwidth of the
    /// interface. \p cameraSafetyMargin is a fraction of what a camera needs, on top of it.
    InterfaceAutoSet(std::string interfaceId, std::int64_t available, double cameraSafetyMargin);

    void run(const CameraList& cameras, bool adjustPacketSize);

private:
    struct Waiting {
        std::shared_ptr<CameraHandler> camera;
        std::int64_t requirement = 0;
    };

    void take(std::int64_t bytesPerSecond);
    /// Subtracts what the locked cameras use; returns the other opened cameras.
    CameraList freeCameras(const CameraList& cameras);
    /// Sets a camera to what it needs if that is below \p share; else queues it.
    void serve(const std::shared_ptr<CameraHandler>& camera, std::uint64_t share);
    /// Sets the cameras of a queue, each to an equal share of what is left then. The share counts
    /// the cameras still in the queue and \p waitingBehind others.
    void serveQueue(std::deque<Waiting>& queue, std::size_t waitingBehind);

    const std::string m_interfaceId;
    std::int64_t m_available;
    const double m_cameraSafetyMargin;
    std::deque<Waiting> m_overShare;
    std::deque<Waiting> m_triggered;
};
