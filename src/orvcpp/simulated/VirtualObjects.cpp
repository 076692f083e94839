// SPDX-License-Identifier: BSD-3-Clause
#include "orvcpp/simulated/VirtualObjects.h"

#include "orvcpp/simulated/VirtualCamera.h"

#include <utility>

namespace orv::simulated {

namespace {

/// Alignment that serves every processor's vector loads.
constexpr std::uint32_t bufferAlignment = 64;

/// Hands out those cameras that are plugged, each as the system object wants it handed out.
OrvErrorType handOutCameras(const std::vector<std::weak_ptr<VirtualCamera>>& cameras,
                            ProviderHost& host, std::shared_ptr<OrvCPP::Camera>* array,
                            std::uint32_t& count) {
    std::vector<std::shared_ptr<OrvCPP::Camera>> found;
    for (const auto& kept : cameras) {
        const std::shared_ptr<VirtualCamera> camera = kept.lock();
        if (camera && camera->device().isPlugged())
            found.push_back(host.handedOut(camera));
    }
    return handOut(found, array, count);
}

} // namespace

OrvErrorType queueFrame(const std::shared_ptr<OrvCPP::Frame>& frame) {
    const auto ours = std::dynamic_pointer_cast<VirtualFrame>(frame);
    if (!ours)
        return OrvErrorBadParameter;
    const std::shared_ptr<FrameSource> source = ours->source();
    return source ? source->queue(ours) : OrvErrorInvalidCall;
}

VirtualStream::VirtualStream(std::shared_ptr<FeatureModule> module,
                             std::shared_ptr<CameraDevice> device)
    : MemoryContainer(std::move(module)), m_device(std::move(device)) {}

OrvErrorType VirtualStream::whileOpen(OrvErrorType code) const {
    if (const OrvErrorType error = enter())
        return error;
    const OrvErrorType error = m_device->checkOpen();
    return error ? error : code;
}

OrvErrorType VirtualStream::Open() {
    return whileOpen(OrvErrorAlreadyDone);
}

OrvErrorType VirtualStream::Close() {
    return whileOpen(OrvErrorNotSupported);
}

OrvErrorType VirtualStream::AnnounceFrame(const std::shared_ptr<OrvCPP::Frame>& /*frame*/) {
    return whileOpen(OrvErrorNotSupported);
}

OrvErrorType VirtualStream::RevokeFrame(const std::shared_ptr<OrvCPP::Frame>& /*frame*/) {
    return whileOpen(OrvErrorNotSupported);
}

OrvErrorType VirtualStream::RevokeAllFrames() {
    return whileOpen(OrvErrorNotSupported);
}

OrvErrorType VirtualStream::QueueFrame(const std::shared_ptr<OrvCPP::Frame>& frame) {
    return queueFrame(frame);
}

OrvErrorType VirtualStream::FlushQueue() {
    return whileOpen(OrvErrorNotSupported);
}

OrvErrorType VirtualStream::StartCapture() {
    return whileOpen(OrvErrorNotSupported);
}

OrvErrorType VirtualStream::EndCapture() {
    return whileOpen(OrvErrorNotSupported);
}

OrvErrorType VirtualStream::GetStreamBufferAlignment(std::uint32_t& alignment) const {
    const OrvErrorType error = whileOpen(OrvErrorSuccess);
    if (!error)
        alignment = bufferAlignment;
    return error;
}

VirtualTransportLayer::VirtualTransportLayer(std::shared_ptr<FeatureModule> module,
                                             TransportLayerData data, ProviderHost& host)
    : MemoryContainer(std::move(module)), m_data(std::move(data)), m_host(host) {}

OrvErrorType VirtualTransportLayer::GetInterfaces(std::shared_ptr<OrvCPP::Interface>* interfaces,
                                                  std::uint32_t& count) const {
    if (const OrvErrorType error = enter())
        return error;
    std::vector<std::shared_ptr<OrvCPP::Interface>> found;
    for (const auto& kept : m_interfaces) {
        if (auto interface = kept.lock())
            found.push_back(std::move(interface));
    }
    return handOut(found, interfaces, count);
}

OrvErrorType VirtualTransportLayer::GetCameras(std::shared_ptr<OrvCPP::Camera>* cameras,
                                               std::uint32_t& count) const {
    if (const OrvErrorType error = enter())
        return error;
    return handOutCameras(m_cameras, m_host, cameras, count);
}

OrvErrorType VirtualTransportLayer::GetID(char* buffer, std::uint32_t& length) const {
    return answerText(m_data.id, buffer, length);
}

OrvErrorType VirtualTransportLayer::GetName(char* buffer, std::uint32_t& length) const {
    return answerText(m_data.name, buffer, length);
}

OrvErrorType VirtualTransportLayer::GetModelName(char* buffer, std::uint32_t& length) const {
    return answerText(m_data.model, buffer, length);
}

OrvErrorType VirtualTransportLayer::GetVendor(char* buffer, std::uint32_t& length) const {
    return answerText(m_data.vendor, buffer, length);
}

OrvErrorType VirtualTransportLayer::GetVersion(char* buffer, std::uint32_t& length) const {
    return answerText(m_data.version, buffer, length);
}

OrvErrorType VirtualTransportLayer::GetPath(char* buffer, std::uint32_t& length) const {
    return answerText(m_data.path, buffer, length);
}

OrvErrorType VirtualTransportLayer::GetType(OrvTransportLayerType& type) const {
    return answer(type, m_data.type);
}

VirtualInterface::VirtualInterface(std::shared_ptr<FeatureModule> module, InterfaceData data,
                                   OrvTransportLayerType type,
                                   std::weak_ptr<OrvCPP::TransportLayer> layer, ProviderHost& host)
    : MemoryContainer(std::move(module)), m_data(std::move(data)), m_type(type),
      m_layer(std::move(layer)), m_host(host) {}

OrvErrorType VirtualInterface::GetID(char* buffer, std::uint32_t& length) const {
    return answerText(m_data.id, buffer, length);
}

OrvErrorType VirtualInterface::GetType(OrvTransportLayerType& type) const {
    return answer(type, m_type);
}

OrvErrorType VirtualInterface::GetName(char* buffer, std::uint32_t& length) const {
    return answerText(m_data.name, buffer, length);
}

OrvErrorType
VirtualInterface::GetTransportLayer(std::shared_ptr<OrvCPP::TransportLayer>& layer) const {
    return answerKept(layer, m_layer);
}

OrvErrorType VirtualInterface::GetCameras(std::shared_ptr<OrvCPP::Camera>* cameras,
                                          std::uint32_t& count) const {
    if (const OrvErrorType error = enter())
        return error;
    return handOutCameras(m_cameras, m_host, cameras, count);
}

} // namespace orv::simulated
