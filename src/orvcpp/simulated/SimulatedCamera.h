// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "orvcpp/core/MemoryContainer.h"
#include "orvcpp/core/Provider.h"
#include "orvcpp/simulated/CameraDevice.h"

#include "OrvCPP/LocalDevice.h"
#include "OrvCPP/Stream.h"

#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace orv::simulated {

/// The objects that a simulated camera consists of.
struct SimulatedCameraParts {
    std::shared_ptr<CameraDevice> device;
    std::shared_ptr<FeatureModule> localDevice;
    std::shared_ptr<FeatureModule> stream;
    std::weak_ptr<OrvCPP::TransportLayer> layer;
    std::weak_ptr<OrvCPP::Interface> interface;
    OrvTransportLayerType type = OrvTransportLayerTypeUnknown;
    std::string extendedId;
    /// Called without a lock when the camera was opened or closed.
    std::function<void(const std::shared_ptr<OrvCPP::Camera>&)> openStateChanged;
};

/// The SDK's object for a simulated camera; there is one for each.
class SimulatedCamera final : public MemoryContainer<OrvCPP::Camera>,
                              public std::enable_shared_from_this<SimulatedCamera> {
public:
    SimulatedCamera(std::shared_ptr<FeatureModule> module, SimulatedCameraParts parts);

    CameraDevice& device() const { return *m_parts.device; }
    const std::string& extendedId() const { return m_parts.extendedId; }

    OrvErrorType Open(OrvAccessModeType mode) override;
    OrvErrorType Close() override;
    OrvErrorType GetID(char* buffer, std::uint32_t& length, bool extended) const override;
    OrvErrorType GetName(char* buffer, std::uint32_t& length) const override;
    OrvErrorType GetModel(char* buffer, std::uint32_t& length) const override;
    OrvErrorType GetSerialNumber(char* buffer, std::uint32_t& length) const override;
    OrvErrorType GetInterfaceType(OrvTransportLayerType& type) const override;
    OrvErrorType GetInterface(std::shared_ptr<OrvCPP::Interface>& found) const override;
    OrvErrorType GetLocalDevice(std::shared_ptr<OrvCPP::LocalDevice>& device) const override;
    OrvErrorType GetTransportLayer(std::shared_ptr<OrvCPP::TransportLayer>& layer) const override;
    OrvErrorType GetStreams(std::shared_ptr<OrvCPP::Stream>* streams,
                            std::uint32_t& count) const override;
    OrvErrorType GetPermittedAccess(OrvAccessModeType& modes) const override;
    OrvErrorType ReadMemory(std::uint64_t address, std::uint8_t* buffer, std::uint32_t size,
                            std::uint32_t& completeReads) const override;
    OrvErrorType
    StartContinuousImageAcquisition(int bufferCount,
                                    const std::shared_ptr<OrvCPP::IFrameObserver>& observer,
                                    OrvCPP::FrameAllocationMode mode) override;
    OrvErrorType StopContinuousImageAcquisition() override;
    OrvErrorType QueueFrame(const std::shared_ptr<OrvCPP::Frame>& frame) override;

private:
    void tellFeatureObservers();

    const SimulatedCameraParts m_parts;
    const std::shared_ptr<OrvCPP::LocalDevice> m_localDevice;
    const std::shared_ptr<OrvCPP::Stream> m_stream;
    /// The register space from address 0.
    const Bytes m_memory;
};

/// Those of \p cameras that are plugged, as \p host hands them to users.
std::vector<std::shared_ptr<OrvCPP::Camera>>
pluggedCameras(const std::vector<std::weak_ptr<SimulatedCamera>>& cameras, ProviderHost& host);

} // namespace orv::simulated
