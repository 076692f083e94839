// SPDX-License-Identifier: BSD-3-Clause
#include "sdk/OrvCameraWrapper.h"

#include "sdk/OrvInterfaceWrapper.h"
#include "sdk/OrvLocalDeviceWrapper.h"
#include "sdk/OrvStreamWrapper.h"
#include "sdk/OrvTransportLayerWrapper.h"
#include "sdk/SdkQuery.h"

#include <limits>

namespace {

/// Lets \p get (a member pointer of the SDK's camera) fill a wrapper that the caller made.
template <class Wrapper, class Get>
OrvErrorType fill(OrvCPP::Camera* camera, const std::shared_ptr<Wrapper>& wrapper, Get get) {
    if (camera == nullptr)
        return noObject;
    if (!wrapper)
        return OrvErrorBadParameter;
    return std::invoke(get, *camera, wrapper->GetHandle());
}

/// The same with a new wrapper, which stays empty on an error.
template <class Wrapper, class Get>
std::pair<std::shared_ptr<Wrapper>, OrvErrorType> make(OrvCPP::Camera* camera, Get get) {
    std::shared_ptr<Wrapper> wrapper;
    const OrvErrorType error = SdkQuery::guarded([&] {
        wrapper = std::make_shared<Wrapper>();
        return fill(camera, wrapper, get);
    });
    if (wrapper && error != OrvErrorSuccess)
        wrapper->GetHandle().reset();
    return {wrapper, error};
}

OrvErrorType id(OrvCPP::Camera* camera, std::string& text, bool extended) {
    return SdkQuery::text(
        camera, text, [extended](const OrvCPP::Camera& asked, char* buffer, std::uint32_t& length) {
            return asked.GetID(buffer, length, extended);
        });
}

} // namespace

OrvCameraWrapper::OrvCameraWrapper(std::shared_ptr<OrvCPP::Camera> handle)
    : m_camera(std::move(handle)) {}

OrvCameraWrapper::~OrvCameraWrapper() = default;

std::shared_ptr<OrvCPP::FeatureContainer> OrvCameraWrapper::GetFeatureContainer() const {
    return m_camera;
}

std::shared_ptr<OrvCPP::Camera> OrvCameraWrapper::GetHandle() const {
    return m_camera;
}

OrvErrorType OrvCameraWrapper::Open(OrvAccessModeType mode) {
    return m_camera ? m_camera->Open(mode) : noObject;
}

OrvErrorType OrvCameraWrapper::Close() {
    return m_camera ? m_camera->Close() : noObject;
}

OrvErrorType OrvCameraWrapper::GetID(std::string& text) const {
    return id(m_camera.get(), text, false);
}

OrvErrorType OrvCameraWrapper::GetExtendedID(std::string& text) const {
    return id(m_camera.get(), text, true);
}

OrvErrorType OrvCameraWrapper::GetName(std::string& name) const {
    return SdkQuery::text(m_camera.get(), name, &OrvCPP::Camera::GetName);
}

OrvErrorType OrvCameraWrapper::GetModel(std::string& model) const {
    return SdkQuery::text(m_camera.get(), model, &OrvCPP::Camera::GetModel);
}

OrvErrorType OrvCameraWrapper::GetSerialNumber(std::string& serialNumber) const {
    return SdkQuery::text(m_camera.get(), serialNumber, &OrvCPP::Camera::GetSerialNumber);
}

OrvErrorType OrvCameraWrapper::GetInterfaceID(std::string& text) const {
    const auto [found, error] = GetInterface();
    return error == OrvErrorSuccess ? found->GetID(text) : error;
}

OrvErrorType OrvCameraWrapper::GetInterfaceType(OrvTransportLayerType& type) const {
    return m_camera ? m_camera->GetInterfaceType(type) : noObject;
}

std::pair<std::shared_ptr<OrvInterfaceWrapper>, OrvErrorType>
OrvCameraWrapper::GetInterface() const {
    return make<OrvInterfaceWrapper>(m_camera.get(), &OrvCPP::Camera::GetInterface);
}

OrvErrorType OrvCameraWrapper::GetInterface(std::shared_ptr<OrvInterfaceWrapper>& found) const {
    return fill(m_camera.get(), found, &OrvCPP::Camera::GetInterface);
}

std::pair<std::shared_ptr<OrvLocalDeviceWrapper>, OrvErrorType>
OrvCameraWrapper::GetLocalDevice() const {
    return make<OrvLocalDeviceWrapper>(m_camera.get(), &OrvCPP::Camera::GetLocalDevice);
}

OrvErrorType OrvCameraWrapper::GetLocalDevice(std::shared_ptr<OrvLocalDeviceWrapper>& found) const {
    return fill(m_camera.get(), found, &OrvCPP::Camera::GetLocalDevice);
}

std::pair<std::shared_ptr<OrvTransportLayerWrapper>, OrvErrorType>
OrvCameraWrapper::GetTransportLayer() const {
    return make<OrvTransportLayerWrapper>(m_camera.get(), &OrvCPP::Camera::GetTransportLayer);
}

OrvErrorType
OrvCameraWrapper::GetTransportLayer(std::shared_ptr<OrvTransportLayerWrapper>& found) const {
    return fill(m_camera.get(), found, &OrvCPP::Camera::GetTransportLayer);
}

OrvErrorType
OrvCameraWrapper::GetStreams(std::vector<std::shared_ptr<OrvStreamWrapper>>& streams) const {
    return SdkQuery::wrappers<OrvCPP::Stream>(m_camera.get(), streams, &OrvCPP::Camera::GetStreams);
}

OrvErrorType OrvCameraWrapper::GetPermittedAccess(OrvAccessModeType& modes) const {
    return m_camera ? m_camera->GetPermittedAccess(modes) : noObject;
}

OrvErrorType OrvCameraWrapper::ReadMemory(std::uint64_t address,
                                          std::vector<std::uint8_t>& buffer) const {
    std::uint32_t completeReads = 0;
    return ReadMemory(address, buffer, completeReads);
}

OrvErrorType OrvCameraWrapper::ReadMemory(std::uint64_t address, std::vector<std::uint8_t>& buffer,
                                          std::uint32_t& completeReads) const {
    if (buffer.empty() || buffer.size() > std::numeric_limits<std::uint32_t>::max())
        return OrvErrorBadParameter;
    return m_camera ? m_camera->ReadMemory(address, buffer.data(),
                                           static_cast<std::uint32_t>(buffer.size()), completeReads)
                    : noObject;
}

OrvErrorType OrvCameraWrapper::StartContinuousImageAcquisition(
    int bufferCount, const std::shared_ptr<OrvCPP::IFrameObserver>& observer,
    FrameAllocationMode mode) {
    return m_camera ? m_camera->StartContinuousImageAcquisition(bufferCount, observer, mode)
                    : noObject;
}

OrvErrorType OrvCameraWrapper::StopContinuousImageAcquisition() {
    return m_camera ? m_camera->StopContinuousImageAcquisition() : noObject;
}

OrvErrorType OrvCameraWrapper::QueueFrame(const std::shared_ptr<OrvCPP::Frame>& frame) {
    return m_camera ? m_camera->QueueFrame(frame) : noObject;
}
