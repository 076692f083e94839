// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "OrvCPP/FeatureContainer.h"

namespace OrvCPP {

/// Who allocates the memory of frames.
enum class FrameAllocationMode : std::int32_t {
    /// The SDK announces buffers of its own.
    AnnounceFrame = 0,
    /// The transport layer allocates.
    AllocAndAnnounceFrame = 1
};

/// One camera. Its identity can be read at any time, its features, local device and streams only
/// while it is open. Thread-safe.
class ORVCPP_API Camera : public FeatureContainer {
public:
    /// Access is exclusive, also within one process: OrvErrorInvalidAccess while the camera is open
    /// here or in another application. GetPermittedAccess then lacks the bit of full access. Only
    /// the user who has opened the camera closes it. Open, Close, Start- and
    /// StopContinuousImageAcquisition answer OrvErrorInvalidCall when they are called from a frame
    /// callback.
    virtual OrvErrorType Open(OrvAccessModeType mode) = 0;
    /// Ends a running acquisition first. OrvErrorDeviceNotOpen when the camera is not open.
    virtual OrvErrorType Close() = 0;

    /// ID of the camera; the extended one is unique across transport layers.
    virtual OrvErrorType GetID(char* buffer, std::uint32_t& length, bool extended) const = 0;
    virtual OrvErrorType GetName(char* buffer, std::uint32_t& length) const = 0;
    virtual OrvErrorType GetModel(char* buffer, std::uint32_t& length) const = 0;
    virtual OrvErrorType GetSerialNumber(char* buffer, std::uint32_t& length) const = 0;
    virtual OrvErrorType GetInterfaceType(OrvTransportLayerType& type) const = 0;
    virtual OrvErrorType GetInterface(std::shared_ptr<Interface>& found) const = 0;
    virtual OrvErrorType GetLocalDevice(std::shared_ptr<LocalDevice>& device) const = 0;
    virtual OrvErrorType GetTransportLayer(std::shared_ptr<TransportLayer>& layer) const = 0;
    virtual OrvErrorType GetStreams(std::shared_ptr<Stream>* streams,
                                    std::uint32_t& count) const = 0;
    /// Access modes that an Open could be granted now, a combination of bits.
    virtual OrvErrorType GetPermittedAccess(OrvAccessModeType& modes) const = 0;
    /// Reads \p size bytes at \p address; \p completeReads is how many bytes were read.
    virtual OrvErrorType ReadMemory(std::uint64_t address, std::uint8_t* buffer, std::uint32_t size,
                                    std::uint32_t& completeReads) const = 0;

    /// Streams until stopped, into \p bufferCount frames.
    /// OrvErrorAlreadyDone when the camera is streaming.
    virtual OrvErrorType
    StartContinuousImageAcquisition(int bufferCount,
                                    const std::shared_ptr<IFrameObserver>& observer,
                                    FrameAllocationMode mode) = 0;
    /// No callback runs any more once this has returned (called from the callback itself:
    /// OrvErrorInvalidCall). OrvErrorAlreadyDone when the camera is not streaming.
    virtual OrvErrorType StopContinuousImageAcquisition() = 0;
    /// Hands a received frame back to be filled again. May be called from the callback, and is
    /// cheap. OrvErrorInUse when the frame is queued, OrvErrorInvalidCall when its acquisition has
    /// ended, OrvErrorBadParameter when it is none of the SDK's.
    virtual OrvErrorType QueueFrame(const std::shared_ptr<Frame>& frame) = 0;
};

/// Told when a camera appears or disappears.
class ORVCPP_API ICameraListObserver {
public:
    virtual ~ICameraListObserver() = default;
    /// Called on one of the SDK's own threads.
    virtual void CameraListChanged(const std::shared_ptr<Camera>& camera,
                                   OrvUpdateTriggerType reason) = 0;
};

/// Lets a host put camera objects of its own in front of the SDK's.
class ORVCPP_API ICameraFactory {
public:
    virtual ~ICameraFactory() = default;
    /// Called once for each camera that is found; what it returns is handed out in the camera's
    /// place. An empty pointer leaves the SDK's own object.
    virtual std::shared_ptr<Camera> CreateCamera(const std::shared_ptr<Camera>& camera) = 0;
};

} // namespace OrvCPP
