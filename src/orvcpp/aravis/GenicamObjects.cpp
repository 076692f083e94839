// SPDX-License-Identifier: BSD-3-Clause
#include "orvcpp/aravis/GenicamObjects.h"

#include "orvcpp/aravis/ModuleFeatures.h"
#include "orvcpp/aravis/stream/Acquisition.h"

#include <utility>

namespace orv::aravis {

namespace {

constexpr const char* vendor = "Meridane Technologies";
/// Alignment that a frame's memory has at least.
constexpr std::uint32_t bufferAlignment = 16;

std::string layerId(OrvTransportLayerType type) {
    return type == OrvTransportLayerTypeGEV ? "GenICamGEV" : "GenICamU3V";
}

std::string layerName(OrvTransportLayerType type) {
    return type == OrvTransportLayerTypeGEV ? "MRD GenICam GigE Vision Transport Layer"
                                            : "MRD GenICam USB3 Vision Transport Layer";
}

/// By the name the engine tells interfaces apart, and finds a USB controller's place in it.
std::string interfaceName(const CameraRecord& camera) {
    const char* const kind =
        camera.type == OrvTransportLayerTypeGEV ? "MRD GigE Interface " : "MRD USB Interface ";
    return kind + camera.interfaceId();
}

std::string libraryVersion() {
    return std::to_string(arv_get_major_version()) + '.' + std::to_string(arv_get_minor_version()) +
           '.' + std::to_string(arv_get_micro_version());
}

std::shared_ptr<FeatureModule> makeModule(const std::shared_ptr<Session>& calls,
                                          FeatureSet features) {
    return std::make_shared<FeatureModule>(calls, std::make_shared<Device>(), std::move(features));
}

} // namespace

OrvErrorType queueFrame(const std::shared_ptr<OrvCPP::Frame>& frame) {
    const auto ours = std::dynamic_pointer_cast<GenicamFrame>(frame);
    if (!ours)
        return OrvErrorBadParameter;
    const std::shared_ptr<Acquisition> acquisition = ours->acquisition();
    return acquisition ? acquisition->queue(*ours) : OrvErrorInvalidCall;
}

GenicamTransportLayer::GenicamTransportLayer(const std::shared_ptr<Session>& calls,
                                             OrvTransportLayerType type,
                                             std::weak_ptr<const Roster> roster)
    : MemoryContainer(
          makeModule(calls, makeTransportLayerFeatures(type, layerId(type), layerName(type)))),
      m_type(type), m_id(layerId(type)), m_name(layerName(type)), m_roster(std::move(roster)) {}

OrvErrorType GenicamTransportLayer::GetInterfaces(std::shared_ptr<OrvCPP::Interface>* interfaces,
                                                  std::uint32_t& count) const {
    if (const OrvErrorType error = enter())
        return error;
    const auto roster = m_roster.lock();
    return roster ? handOut(roster->interfacesOf(m_type), interfaces, count)
                  : OrvErrorApiNotStarted;
}

OrvErrorType GenicamTransportLayer::GetCameras(std::shared_ptr<OrvCPP::Camera>* cameras,
                                               std::uint32_t& count) const {
    if (const OrvErrorType error = enter())
        return error;
    const auto roster = m_roster.lock();
    return roster ? handOut(roster->camerasOf(m_type, nullptr), cameras, count)
                  : OrvErrorApiNotStarted;
}

OrvErrorType GenicamTransportLayer::GetID(char* buffer, std::uint32_t& length) const {
    return answerText(m_id, buffer, length);
}

OrvErrorType GenicamTransportLayer::GetName(char* buffer, std::uint32_t& length) const {
    return answerText(m_name, buffer, length);
}

OrvErrorType GenicamTransportLayer::GetModelName(char* buffer, std::uint32_t& length) const {
    return answerText(m_name, buffer, length);
}

OrvErrorType GenicamTransportLayer::GetVendor(char* buffer, std::uint32_t& length) const {
    return answerText(vendor, buffer, length);
}

OrvErrorType GenicamTransportLayer::GetVersion(char* buffer, std::uint32_t& length) const {
    return answerText(libraryVersion(), buffer, length);
}

OrvErrorType GenicamTransportLayer::GetPath(char* buffer, std::uint32_t& length) const {
    return answerText("Aravis " + libraryVersion(), buffer, length);
}

OrvErrorType GenicamTransportLayer::GetType(OrvTransportLayerType& type) const {
    return answer(type, m_type);
}

GenicamInterface::GenicamInterface(const std::shared_ptr<Session>& calls,
                                   const CameraRecord& camera,
                                   std::weak_ptr<OrvCPP::TransportLayer> layer,
                                   std::weak_ptr<const Roster> roster)
    : MemoryContainer(makeModule(calls, makeInterfaceFeatures(camera, interfaceName(camera)))),
      m_type(camera.type), m_id(camera.interfaceId()), m_name(interfaceName(camera)),
      m_layer(std::move(layer)), m_roster(std::move(roster)) {}

OrvErrorType GenicamInterface::GetID(char* buffer, std::uint32_t& length) const {
    return answerText(m_id, buffer, length);
}

OrvErrorType GenicamInterface::GetType(OrvTransportLayerType& type) const {
    return answer(type, m_type);
}

OrvErrorType GenicamInterface::GetName(char* buffer, std::uint32_t& length) const {
    return answerText(m_name, buffer, length);
}

OrvErrorType
GenicamInterface::GetTransportLayer(std::shared_ptr<OrvCPP::TransportLayer>& layer) const {
    return answerKept(layer, m_layer);
}

OrvErrorType GenicamInterface::GetCameras(std::shared_ptr<OrvCPP::Camera>* cameras,
                                          std::uint32_t& count) const {
    if (const OrvErrorType error = enter())
        return error;
    const auto roster = m_roster.lock();
    return roster ? handOut(roster->camerasOf(m_type, this), cameras, count)
                  : OrvErrorApiNotStarted;
}

GenicamStream::GenicamStream(std::shared_ptr<FeatureModule> module,
                             std::shared_ptr<DeviceSession> device)
    : MemoryContainer(std::move(module)), m_device(std::move(device)) {}

OrvErrorType GenicamStream::whileOpen(OrvErrorType code) const {
    if (const OrvErrorType error = enter())
        return error;
    const OrvErrorType error = m_device->admits(false);
    return error ? error : code;
}

OrvErrorType GenicamStream::Open() {
    return whileOpen(OrvErrorAlreadyDone);
}

OrvErrorType GenicamStream::Close() {
    return whileOpen(OrvErrorNotSupported);
}

OrvErrorType GenicamStream::AnnounceFrame(const std::shared_ptr<OrvCPP::Frame>& /*frame*/) {
    return whileOpen(OrvErrorNotSupported);
}

OrvErrorType GenicamStream::RevokeFrame(const std::shared_ptr<OrvCPP::Frame>& /*frame*/) {
    return whileOpen(OrvErrorNotSupported);
}

OrvErrorType GenicamStream::RevokeAllFrames() {
    return whileOpen(OrvErrorNotSupported);
}

OrvErrorType GenicamStream::QueueFrame(const std::shared_ptr<OrvCPP::Frame>& frame) {
    return queueFrame(frame);
}

OrvErrorType GenicamStream::FlushQueue() {
    return whileOpen(OrvErrorNotSupported);
}

OrvErrorType GenicamStream::StartCapture() {
    return whileOpen(OrvErrorNotSupported);
}

OrvErrorType GenicamStream::EndCapture() {
    return whileOpen(OrvErrorNotSupported);
}

OrvErrorType GenicamStream::GetStreamBufferAlignment(std::uint32_t& alignment) const {
    const OrvErrorType error = whileOpen(OrvErrorSuccess);
    if (!error)
        alignment = bufferAlignment;
    return error;
}

} // namespace orv::aravis
