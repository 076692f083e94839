// SPDX-License-Identifier: BSD-3-Clause
#include "orvcpp/simulated/VirtualCamera.h"

#include <algorithm>
#include <utility>

namespace orv::simulated {

namespace {

constexpr std::size_t memorySize = 4096;

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

VirtualCamera::VirtualCamera(std::shared_ptr<FeatureModule> module, VirtualCameraParts parts)
    : MemoryContainer(std::move(module)), m_parts(std::move(parts)),
      m_localDevice(std::make_shared<VirtualLocalDevice>(m_parts.localDevice)),
      m_stream(std::make_shared<VirtualStream>(m_parts.stream, m_parts.device)),
      m_memory(makeMemory(m_parts.device->data())) {}

OrvErrorType VirtualCamera::Open(OrvAccessModeType mode) {
    if (const OrvErrorType error = enter())
        return error;
    const OrvErrorType error = device().open(mode);
    if (!error)
        m_parts.openStateChanged(shared_from_this());
    return error;
}

OrvErrorType VirtualCamera::Close() {
    if (const OrvErrorType error = enter())
        return error;
    if (const OrvErrorType error = device().close())
        return error;
    for (FeatureModule* closed : {&module(), m_parts.localDevice.get(), m_parts.stream.get()})
        closed->forgetObservers();
    m_parts.openStateChanged(shared_from_this());
    return OrvErrorSuccess;
}

OrvErrorType VirtualCamera::GetID(char* buffer, std::uint32_t& length, bool extended) const {
    return answerText(extended ? m_parts.extendedId : device().data().id, buffer, length);
}

OrvErrorType VirtualCamera::GetName(char* buffer, std::uint32_t& length) const {
    return answerText(device().data().name, buffer, length);
}

OrvErrorType VirtualCamera::GetModel(char* buffer, std::uint32_t& length) const {
    return answerText(device().data().model, buffer, length);
}

OrvErrorType VirtualCamera::GetSerialNumber(char* buffer, std::uint32_t& length) const {
    return answerText(device().data().serialNumber, buffer, length);
}

OrvErrorType VirtualCamera::GetInterfaceType(OrvTransportLayerType& type) const {
    return answer(type, m_parts.type);
}

OrvErrorType VirtualCamera::GetInterface(std::shared_ptr<OrvCPP::Interface>& found) const {
    return answerKept(found, m_parts.interface);
}

OrvErrorType VirtualCamera::GetLocalDevice(std::shared_ptr<OrvCPP::LocalDevice>& found) const {
    if (const OrvErrorType error = enter())
        return error;
    if (const OrvErrorType error = device().checkOpen())
        return error;
    found = m_localDevice;
    return OrvErrorSuccess;
}

OrvErrorType
VirtualCamera::GetTransportLayer(std::shared_ptr<OrvCPP::TransportLayer>& layer) const {
    return answerKept(layer, m_parts.layer);
}

OrvErrorType VirtualCamera::GetStreams(std::shared_ptr<OrvCPP::Stream>* streams,
                                       std::uint32_t& count) const {
    OrvErrorType error = enter();
    if (!error)
        error = device().checkOpen();
    if (error) {
        count = 0;
        return error;
    }
    return handOut(std::vector<std::shared_ptr<OrvCPP::Stream>>{m_stream}, streams, count);
}

OrvErrorType VirtualCamera::GetPermittedAccess(OrvAccessModeType& modes) const {
    return answer(modes, device().permittedAccess());
}

OrvErrorType VirtualCamera::ReadMemory(std::uint64_t address, std::uint8_t* buffer,
                                       std::uint32_t size, std::uint32_t& completeReads) const {
    if (const OrvErrorType error = enter())
        return error;
    if (const OrvErrorType error = device().checkOpen())
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

void VirtualCamera::tellFeatureObservers() {
    module().tellObservers(nullptr);
    m_parts.stream->tellObservers(nullptr);
}

OrvErrorType VirtualCamera::StartContinuousImageAcquisition(
    int bufferCount, const std::shared_ptr<OrvCPP::IFrameObserver>& observer,
    OrvCPP::FrameAllocationMode /*mode*/) {
    if (const OrvErrorType error = enter())
        return error;
    const OrvErrorType error = device().start(bufferCount, observer);
    if (!error)
        tellFeatureObservers();
    return error;
}

OrvErrorType VirtualCamera::StopContinuousImageAcquisition() {
    if (const OrvErrorType error = enter())
        return error;
    const OrvErrorType error = device().stop();
    if (!error)
        tellFeatureObservers();
    return error;
}

OrvErrorType VirtualCamera::QueueFrame(const std::shared_ptr<OrvCPP::Frame>& frame) {
    return queueFrame(frame);
}

} // namespace orv::simulated
