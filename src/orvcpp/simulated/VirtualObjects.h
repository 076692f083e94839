// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "orvcpp/core/FeatureModule.h"
#include "orvcpp/core/MemoryContainer.h"
#include "orvcpp/core/Provider.h"
#include "orvcpp/simulated/CameraDevice.h"
#include "orvcpp/simulated/Scenario.h"

#include "OrvCPP/LocalDevice.h"
#include "OrvCPP/Stream.h"

#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace orv::simulated {

class VirtualCamera;

class VirtualLocalDevice final : public MemoryContainer<OrvCPP::LocalDevice> {
public:
    explicit VirtualLocalDevice(std::shared_ptr<FeatureModule> module)
        : MemoryContainer(std::move(module)) {}
};

/// The stream of an opened simulated camera. Frames are captured through the camera's continuous
/// acquisition; capturing into frames of the user's own is not supported.
class VirtualStream final : public MemoryContainer<OrvCPP::Stream> {
public:
    VirtualStream(std::shared_ptr<FeatureModule> module, std::shared_ptr<CameraDevice> device);

    /// OrvErrorAlreadyDone: a stream is open as long as its camera is.
    OrvErrorType Open() override;
    OrvErrorType Close() override;
    OrvErrorType AnnounceFrame(const std::shared_ptr<OrvCPP::Frame>& frame) override;
    OrvErrorType RevokeFrame(const std::shared_ptr<OrvCPP::Frame>& frame) override;
    OrvErrorType RevokeAllFrames() override;
    OrvErrorType QueueFrame(const std::shared_ptr<OrvCPP::Frame>& frame) override;
    OrvErrorType FlushQueue() override;
    OrvErrorType StartCapture() override;
    OrvErrorType EndCapture() override;
    OrvErrorType GetStreamBufferAlignment(std::uint32_t& alignment) const override;

private:
    OrvErrorType whileOpen(OrvErrorType code) const;

    const std::shared_ptr<CameraDevice> m_device;
};

/// Hands a frame back to the acquisition that it came from.
OrvErrorType queueFrame(const std::shared_ptr<OrvCPP::Frame>& frame);

class VirtualTransportLayer final : public MemoryContainer<OrvCPP::TransportLayer> {
public:
    VirtualTransportLayer(std::shared_ptr<FeatureModule> module, TransportLayerData data,
                          ProviderHost& host);

    /// To be called while the scenario is built.
    void add(const std::shared_ptr<OrvCPP::Interface>& interface) {
        m_interfaces.push_back(interface);
    }
    void add(const std::shared_ptr<VirtualCamera>& camera) { m_cameras.push_back(camera); }

    OrvErrorType GetInterfaces(std::shared_ptr<OrvCPP::Interface>* interfaces,
                               std::uint32_t& count) const override;
    OrvErrorType GetCameras(std::shared_ptr<OrvCPP::Camera>* cameras,
                            std::uint32_t& count) const override;
    OrvErrorType GetID(char* buffer, std::uint32_t& length) const override;
    OrvErrorType GetName(char* buffer, std::uint32_t& length) const override;
    OrvErrorType GetModelName(char* buffer, std::uint32_t& length) const override;
    OrvErrorType GetVendor(char* buffer, std::uint32_t& length) const override;
    OrvErrorType GetVersion(char* buffer, std::uint32_t& length) const override;
    OrvErrorType GetPath(char* buffer, std::uint32_t& length) const override;
    OrvErrorType GetType(OrvTransportLayerType& type) const override;

private:
    const TransportLayerData m_data;
    ProviderHost& m_host;
    std::vector<std::weak_ptr<OrvCPP::Interface>> m_interfaces;
    std::vector<std::weak_ptr<VirtualCamera>> m_cameras;
};

class VirtualInterface final : public MemoryContainer<OrvCPP::Interface> {
public:
    VirtualInterface(std::shared_ptr<FeatureModule> module, InterfaceData data,
                     OrvTransportLayerType type, std::weak_ptr<OrvCPP::TransportLayer> layer,
                     ProviderHost& host);

    /// To be called while the scenario is built.
    void add(const std::shared_ptr<VirtualCamera>& camera) { m_cameras.push_back(camera); }

    OrvErrorType GetID(char* buffer, std::uint32_t& length) const override;
    OrvErrorType GetType(OrvTransportLayerType& type) const override;
    OrvErrorType GetName(char* buffer, std::uint32_t& length) const override;
    OrvErrorType GetTransportLayer(std::shared_ptr<OrvCPP::TransportLayer>& layer) const override;
    OrvErrorType GetCameras(std::shared_ptr<OrvCPP::Camera>* cameras,
                            std::uint32_t& count) const override;

private:
    const InterfaceData m_data;
    const OrvTransportLayerType m_type;
    const std::weak_ptr<OrvCPP::TransportLayer> m_layer;
    ProviderHost& m_host;
    std::vector<std::weak_ptr<VirtualCamera>> m_cameras;
};

} // namespace orv::simulated
