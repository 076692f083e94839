// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "orvcpp/aravis/device/DetachableThreads.h"
#include "orvcpp/aravis/device/OpenedCamera.h"
#include "orvcpp/aravis/discovery/CameraRecord.h"

#include "OrvCPP/Camera.h"

#include <chrono>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <string>

namespace orv::aravis {

/// What all cameras share.
struct CameraContext {
    std::shared_ptr<ProviderCalls> calls;
    std::shared_ptr<DetachableThreads> threads;
    std::shared_ptr<AdapterReceivers> receivers;
    PacketSocket packetSocket = PacketSocket::Automatic;
    /// Called without a lock when a camera was opened, closed or lost.
    std::function<void(const std::shared_ptr<OrvCPP::Camera>&, OrvUpdateTriggerType)> changed;
    /// Called when a camera has not answered.
    std::function<void()> fellSilent;
};

/// The SDK's object for a camera; the same one when the camera is lost and found again.
class GenicamCamera final : public OrvCPP::Camera,
                            public std::enable_shared_from_this<GenicamCamera> {
public:
    using Clock = std::chrono::steady_clock;

    GenicamCamera(CameraContext context, std::string id,
                  std::weak_ptr<OrvCPP::TransportLayer> layer);
    ~GenicamCamera() override;

    const std::string& id() const { return m_id; }
    /// The camera was found by a search that began at \p begun.
    void found(const CameraRecord& record, std::shared_ptr<OrvCPP::Interface> interface,
               Clock::time_point begun);
    /// Asks the camera which access it grants; waits up to 750 ms, empty without an answer. A
    /// camera that has not answered is not asked again until it is found again.
    std::optional<OrvAccessModeType> ask() const;
    CameraRecord record() const;
    std::shared_ptr<OrvCPP::Interface> interface() const;
    /// It is open, and not lost.
    bool isAlive() const;

    OrvErrorType GetFeatureByName(const char* name,
                                  std::shared_ptr<OrvCPP::Feature>& feature) const override;
    OrvErrorType GetFeatures(std::shared_ptr<OrvCPP::Feature>* features,
                             std::uint32_t& count) const override;
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

    /// Close() for the provider, which counts no calls.
    OrvErrorType close();

private:
    std::shared_ptr<OpenedCamera> opened() const;
    /// Begins a call that needs the camera open; the error of a closed or lost camera.
    OrvErrorType enterOpened(std::shared_ptr<OpenedCamera>& found) const;
    OrvErrorType open(OrvAccessModeType mode);
    bool isSilent() const;
    void noteSilence() const;
    /// ask(). Has the other cameras asked, too, when this one stops answering.
    std::optional<OrvAccessModeType> permitted() const;
    void tell(OrvUpdateTriggerType reason);
    OrvErrorType answerText(const std::string& text, char* buffer, std::uint32_t& length) const;

    const CameraContext m_context;
    const std::string m_id;
    const std::weak_ptr<OrvCPP::TransportLayer> m_layer;
    /// Held while opening, closing, starting and stopping.
    std::mutex m_control;
    /// Held while the camera is asked.
    mutable std::mutex m_ask;
    mutable std::mutex m_mutex;
    /// All below guarded by m_mutex.
    CameraRecord m_record;
    std::shared_ptr<OrvCPP::Interface> m_interface;
    std::shared_ptr<OpenedCamera> m_opened;
    /// Time of the request without an answer, until it is found again.
    mutable std::optional<Clock::time_point> m_silentSince;
};

} // namespace orv::aravis
