// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "OrvCPP/Camera.h"
#include "sdk/OrvFeatureContainerWrapper.h"

#include <cstdint>
#include <string>
#include <utility>

/// A camera of the camera SDK.
class OrvCameraWrapper : public OrvFeatureContainerWrapper {
public:
    using FrameAllocationMode = OrvCPP::FrameAllocationMode;

    explicit OrvCameraWrapper(std::shared_ptr<OrvCPP::Camera> handle = {});
    ~OrvCameraWrapper() override;

    std::shared_ptr<OrvCPP::FeatureContainer> GetFeatureContainer() const override;
    virtual std::shared_ptr<OrvCPP::Camera> GetHandle() const;
    virtual OrvErrorType Open(OrvAccessModeType mode);
    virtual OrvErrorType Close();
    virtual OrvErrorType GetID(std::string& id) const;
    virtual OrvErrorType GetExtendedID(std::string& id) const;
    virtual OrvErrorType GetName(std::string& name) const;
    virtual OrvErrorType GetModel(std::string& model) const;
    virtual OrvErrorType GetSerialNumber(std::string& serialNumber) const;
    virtual OrvErrorType GetInterfaceID(std::string& id) const;
    virtual OrvErrorType GetInterfaceType(OrvTransportLayerType& type) const;
    /// A new wrapper and the SDK's result. On an error the wrapper has no SDK object; when memory
    /// is short, there is no wrapper.
    virtual std::pair<std::shared_ptr<OrvInterfaceWrapper>, OrvErrorType> GetInterface() const;
    virtual OrvErrorType GetInterface(std::shared_ptr<OrvInterfaceWrapper>& found) const;
    virtual std::pair<std::shared_ptr<OrvLocalDeviceWrapper>, OrvErrorType> GetLocalDevice() const;
    virtual OrvErrorType GetLocalDevice(std::shared_ptr<OrvLocalDeviceWrapper>& found) const;
    virtual std::pair<std::shared_ptr<OrvTransportLayerWrapper>, OrvErrorType>
    GetTransportLayer() const;
    virtual OrvErrorType GetTransportLayer(std::shared_ptr<OrvTransportLayerWrapper>& found) const;
    virtual OrvErrorType GetStreams(std::vector<std::shared_ptr<OrvStreamWrapper>>& streams) const;
    virtual OrvErrorType GetPermittedAccess(OrvAccessModeType& modes) const;
    /// Reads as many bytes at \p address as \p buffer has; OrvErrorBadParameter when it has none.
    virtual OrvErrorType ReadMemory(std::uint64_t address, std::vector<std::uint8_t>& buffer) const;
    virtual OrvErrorType ReadMemory(std::uint64_t address, std::vector<std::uint8_t>& buffer,
                                    std::uint32_t& completeReads) const;
    virtual OrvErrorType
    StartContinuousImageAcquisition(int bufferCount,
                                    const std::shared_ptr<OrvCPP::IFrameObserver>& observer,
                                    FrameAllocationMode mode = FrameAllocationMode::AnnounceFrame);
    virtual OrvErrorType StopContinuousImageAcquisition();
    virtual OrvErrorType QueueFrame(const std::shared_ptr<OrvCPP::Frame>& frame);

private:
    std::shared_ptr<OrvCPP::Camera> m_camera;
};
