// SPDX-License-Identifier: BSD-3-Clause
#include "orvcpp/simulated/SimulatedCamera.h"

#include "orvcpp/core/MemoryLocalDevice.h"
#include "orvcpp/core/MemoryStream.h"

#include <algorithm>
#include <utility>

namespace orv::simulated {

namespace {

constexpr std::size_t memorySize = 4096;
/// Alignment that serves every processor's vector loads.
constexpr std::uint32_t bufferAlignment = 64;

OrvErrorType queueFrame(const std::shared_ptr<OrvCPP::Frame>& frame) {
    const auto ours = std::dynamic_pointer_cast<SimulatedFrame>(frame);
    if (!ours)
        return OrvErrorBadParameter;
    const std::shared_ptr<FrameSource> source = ours->source();
    return source ? source->queue(ours) : OrvErrorInvalidCall;
}

void putText(Bytes& memory, std::size_t address, std::size_t room, const std::string& text) {
    std::copy_n(text.begin(), std::min(room - 1, text.size()),
                memory.begin() + static_cast<std::ptrdiff_t>(address));
}

/// The identity texts at the addresses of the GigE Vision bootstrap registers, otherwise zero.
Bytes makeMemory(const CameraData& data) {
    Bytes memory(memorySize);
    putText(memory, 0x48, 32, data.vendor);
    putText(memory, 0x68, 32, data.model);
    putText(memory, 0xD8, 16, data.serialNumber);
    putText(memory, 0xE8, 16, data.name);
    return memory;
}

} // namespace

SimulatedCamera::SimulatedCamera(std::shared_ptr<FeatureModule> module, SimulatedCameraParts parts)
    : MemoryContainer(std::move(module)), m_parts(std::move(parts)),
      m_localDevice(std::make_shared<MemoryLocalDevice>(m_parts.localDevice)),
      m_stream(std::make_shared<MemoryStream>(m_parts.stream, bufferAlignment, &queueFrame)),
      m_memory(makeMemory(m_parts.device->data())) {}

OrvErrorType SimulatedCamera::Open(OrvAccessModeType mode) {
    if (const OrvErrorType error = enter(); error != OrvErrorSuccess)
        return error;
    const OrvErrorType error = device().open(mode);
    if (error == OrvErrorSuccess)
        m_parts.openStateChanged(shared_from_this());
    return error;
}

OrvErrorType SimulatedCamera::Close() {
    if (const OrvErrorType error = enter(); error != OrvErrorSuccess)
        return error;
    if (const OrvErrorType error = device().close(); error != OrvErrorSuccess)
        return error;
    for (FeatureModule* closed : {&module(), m_parts.localDevice.get(), m_parts.stream.get()})
        closed->forgetObservers();
    m_parts.openStateChanged(shared_from_this());
    return OrvErrorSuccess;
}

OrvErrorType SimulatedCamera::GetID(char* buffer, std::uint32_t& length, bool extended) const {
    return answerText(extended ? m_parts.extendedId : device().data().id, buffer, length);
}

OrvErrorType SimulatedCamera::GetName(char* buffer, std::uint32_t& length) const {
    return answerText(device().data().name, buffer, length);
}

OrvErrorType SimulatedCamera::GetModel(char* buffer, std::uint32_t& length) const {
    return answerText(device().data().model, buffer, length);
}

OrvErrorType SimulatedCamera::GetSerialNumber(char* buffer, std::uint32_t& length) const {
    return answerText(device().data().serialNumber, buffer, length);
}

OrvErrorType SimulatedCamera::GetInterfaceType(OrvTransportLayerType& type) const {
    return answer(type, m_parts.type);
}

OrvErrorType SimulatedCamera::GetInterface(std::shared_ptr<OrvCPP::Interface>& found) const {
    return answerKept(found, m_parts.interface);
}

OrvErrorType SimulatedCamera::GetLocalDevice(std::shared_ptr<OrvCPP::LocalDevice>& found) const {
    if (const OrvErrorType error = enter(); error != OrvErrorSuccess)
        return error;
    if (const OrvErrorType error = device().checkOpen(); error != OrvErrorSuccess)
        return error;
    found = m_localDevice;
    return OrvErrorSuccess;
}

OrvErrorType
SimulatedCamera::GetTransportLayer(std::shared_ptr<OrvCPP::TransportLayer>& layer) const {
    return answerKept(layer, m_parts.layer);
}

OrvErrorType SimulatedCamera::GetStreams(std::shared_ptr<OrvCPP::Stream>* streams,
                                         std::uint32_t& count) const {
    OrvErrorType error = enter();
    if (error == OrvErrorSuccess)
        error = device().checkOpen();
    if (error != OrvErrorSuccess) {
        count = 0;
        return error;
    }
    return writeArray(std::vector<std::shared_ptr<OrvCPP::Stream>>{m_stream}, streams, count);
}

OrvErrorType SimulatedCamera::GetPermittedAccess(OrvAccessModeType& modes) const {
    return answer(modes, device().permittedAccess());
}

OrvErrorType SimulatedCamera::ReadMemory(std::uint64_t address, std::uint8_t* buffer,
                                         std::uint32_t size, std::uint32_t& completeReads) const {
    if (const OrvErrorType error = enter(); error != OrvErrorSuccess)
        return error;
    if (const OrvErrorType error = device().checkOpen(); error != OrvErrorSuccess)
        return error;
    completeReads = 0;
    if (!buffer || size == 0)
        return OrvErrorBadParameter;
    if (address >= m_memory.size())
        return OrvErrorInvalidAddress;
    const auto readable =
        static_cast<std::uint32_t>(std::min<std::uint64_t>(size, m_memory.size() - address));
    std::copy_n(m_memory.begin() + static_cast<std::ptrdiff_t>(address), readable, buffer);
    completeReads = readable;
    return readable == size ? OrvErrorSuccess : OrvErrorIncomplete;
}

void SimulatedCamera::tellFeatureObservers() {
    module().tellObservers(nullptr);
    m_parts.stream->tellObservers(nullptr);
}

OrvErrorType SimulatedCamera::StartContinuousImageAcquisition(
    int bufferCount, const std::shared_ptr<OrvCPP::IFrameObserver>& observer,
    OrvCPP::FrameAllocationMode /*mode*/) {
    if (const OrvErrorType error = enter(); error != OrvErrorSuccess)
        return error;
    const OrvErrorType error = device().start(bufferCount, observer);
    if (error == OrvErrorSuccess)
        tellFeatureObservers();
    return error;
}

OrvErrorType SimulatedCamera::StopContinuousImageAcquisition() {
    if (const OrvErrorType error = enter(); error != OrvErrorSuccess)
        return error;
    const OrvErrorType error = device().stop();
    if (error == OrvErrorSuccess)
        tellFeatureObservers();
    return error;
}

OrvErrorType SimulatedCamera::QueueFrame(const std::shared_ptr<OrvCPP::Frame>& frame) {
    return queueFrame(frame);
}

std::vector<std::shared_ptr<OrvCPP::Camera>>
pluggedCameras(const std::vector<std::weak_ptr<SimulatedCamera>>& cameras, ProviderHost& host) {
    std::vector<std::shared_ptr<OrvCPP::Camera>> plugged;
    for (const auto& kept : cameras) {
        const std::shared_ptr<SimulatedCamera> camera = kept.lock();
        if (camera && camera->device().isPlugged())
            plugged.push_back(host.publicCamera(camera));
    }
    return plugged;
}

} // namespace orv::simulated
