// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "orvcpp/aravis/device/DeviceSession.h"
#include "orvcpp/aravis/discovery/CameraRecord.h"
#include "orvcpp/core/Device.h"
#include "orvcpp/core/MemoryContainer.h"
#include "orvcpp/core/Provider.h"

#include "OrvCPP/Interface.h"
#include "OrvCPP/LocalDevice.h"
#include "OrvCPP/Stream.h"
#include "OrvCPP/TransportLayer.h"

#include <memory>
#include <string>
#include <vector>

namespace orv::aravis {

class GenicamInterface;

/// What is there at the moment, as transport layers and interfaces tell of it. Thread-safe.
class Roster {
public:
    virtual ~Roster() = default;
    /// Each camera as the system object wants it handed out. An empty \p interface: of all.
    virtual std::vector<std::shared_ptr<OrvCPP::Camera>>
    camerasOf(OrvTransportLayerType type, const OrvCPP::Interface* interface) const = 0;
    virtual std::vector<std::shared_ptr<OrvCPP::Interface>>
    interfacesOf(OrvTransportLayerType type) const = 0;
};

/// The one transport layer of a kind of cameras.
class GenicamTransportLayer final : public MemoryContainer<OrvCPP::TransportLayer> {
public:
    GenicamTransportLayer(const std::shared_ptr<Session>& calls, OrvTransportLayerType type,
                          std::weak_ptr<const Roster> roster);

    const std::string& id() const { return m_id; }

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
    const OrvTransportLayerType m_type;
    const std::string m_id;
    const std::string m_name;
    const std::weak_ptr<const Roster> m_roster;
};

/// A network adapter or a USB controller with cameras.
class GenicamInterface final : public MemoryContainer<OrvCPP::Interface> {
public:
    /// The interface through which \p camera is reached.
    GenicamInterface(const std::shared_ptr<Session>& calls, const CameraRecord& camera,
                     std::weak_ptr<OrvCPP::TransportLayer> layer,
                     std::weak_ptr<const Roster> roster);

    const std::string& id() const { return m_id; }
    OrvTransportLayerType type() const { return m_type; }

    OrvErrorType GetID(char* buffer, std::uint32_t& length) const override;
    OrvErrorType GetType(OrvTransportLayerType& type) const override;
    OrvErrorType GetName(char* buffer, std::uint32_t& length) const override;
    OrvErrorType GetTransportLayer(std::shared_ptr<OrvCPP::TransportLayer>& layer) const override;
    OrvErrorType GetCameras(std::shared_ptr<OrvCPP::Camera>* cameras,
                            std::uint32_t& count) const override;

private:
    const OrvTransportLayerType m_type;
    const std::string m_id;
    const std::string m_name;
    const std::weak_ptr<OrvCPP::TransportLayer> m_layer;
    const std::weak_ptr<const Roster> m_roster;
};

/// Lets features in this host's memory be reached while a camera is open.
class WhileOpen final : public Device {
public:
    explicit WhileOpen(std::shared_ptr<DeviceSession> device) : m_device(std::move(device)) {}
    OrvErrorType admits(bool writing) const override { return m_device->admits(writing); }

private:
    const std::shared_ptr<DeviceSession> m_device;
};

class GenicamLocalDevice final : public MemoryContainer<OrvCPP::LocalDevice> {
public:
    explicit GenicamLocalDevice(std::shared_ptr<FeatureModule> module)
        : MemoryContainer(std::move(module)) {}
};

/// The stream of an opened camera. Frames are captured through the camera's continuous
/// acquisition; capturing into frames of the user's own is not supported.
class GenicamStream final : public MemoryContainer<OrvCPP::Stream> {
public:
    GenicamStream(std::shared_ptr<FeatureModule> module, std::shared_ptr<DeviceSession> device);

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

    const std::shared_ptr<DeviceSession> m_device;
};

/// Hands a frame back to the acquisition that it came from.
OrvErrorType queueFrame(const std::shared_ptr<OrvCPP::Frame>& frame);

} // namespace orv::aravis
