// SPDX-License-Identifier: BSD-3-Clause
#include "orvcpp/aravis/stream/Acquisition.h"

#include "orvcpp/aravis/device/NodeAccess.h"
#include "orvcpp/aravis/device/SettingsLock.h"
#include "orvcpp/aravis/stream/GvspStream.h"
#include "orvcpp/aravis/stream/LibraryStream.h"
#include "orvcpp/core/SdkLog.h"

#include <thread>
#include <utility>

namespace orv::aravis {

namespace {

constexpr std::int64_t largestPayload = std::int64_t{1} << 31;

OrvErrorType readPayload(const FeatureCatalogue& features, std::size_t& payload) {
    const auto feature = features.find("PayloadSize");
    if (!feature)
        return OrvErrorNotFound;
    std::int64_t bytes = 0;
    if (const OrvErrorType error = node::get(*feature, bytes); error != OrvErrorSuccess)
        return error;
    if (bytes <= 0 || bytes > largestPayload)
        return OrvErrorInvalidValue;
    payload = static_cast<std::size_t>(bytes);
    return OrvErrorSuccess;
}

OrvErrorType runCommand(const FeatureCatalogue& features, const char* name) {
    const auto command = features.find(name);
    return command ? node::run(*command) : OrvErrorNotFound;
}

} // namespace

Acquisition::Acquisition(std::shared_ptr<DeviceConnection> device, Settings settings)
    : m_device(std::move(device)), m_settings(std::move(settings)) {}

Acquisition::~Acquisition() {
    endDelivery();
}

OrvErrorType Acquisition::start(int bufferCount, std::shared_ptr<OrvCPP::IFrameObserver> observer) {
    m_isStarted = true;
    m_observer = std::move(observer);
    const OrvErrorType error =
        m_device->call([self = shared_from_this(), bufferCount](
                           ArvDevice* device) { return self->startOn(device, bufferCount); },
                       DeviceConnection::longCallLimit);
    if (error != OrvErrorSuccess)
        stop();
    return error;
}

OrvErrorType Acquisition::startOn(ArvDevice* device, int bufferCount) {
    const FeatureCatalogue& features = *m_device->features();
    std::size_t payload = 0;
    if (const OrvErrorType error = readPayload(features, payload); error != OrvErrorSuccess)
        return error;
    const std::shared_ptr<CameraStream> opened = makeStream(payload);
    if (const OrvErrorType error = opened->open(device); error != OrvErrorSuccess)
        return error;
    // Opening may have adjusted the packet size.
    if (const auto& limit = m_device->delayLimit()) {
        if (const OrvErrorType error = limit->followPacketSize(); error != OrvErrorSuccess) {
            opened->close();
            return error;
        }
    }
    {
        const std::lock_guard lock(m_mutex);
        if (!m_isOver)
            m_stream = opened;
    }
    if (!stream()) {
        opened->close();
        return OrvErrorInvalidCall;
    }
    if (m_device->record().type == OrvTransportLayerTypeGEV)
        logInfo(m_device->record().id() + ": Frames come through a " +
                opened->transport().description() + '.' + opened->transport().advice());
    lockSettings(features, true);
    OrvErrorType error = announceFrames(payload, bufferCount);
    if (error == OrvErrorSuccess)
        error = runCommand(features, "AcquisitionStart");
    if (error != OrvErrorSuccess || m_stopping)
        lockSettings(features, false);
    return error;
}

std::shared_ptr<CameraStream> Acquisition::makeStream(std::size_t payload) {
    // The stream must not keep this object.
    const auto deliver = [kept = weak_from_this()](const std::shared_ptr<GenicamFrame>& frame) {
        if (const auto acquisition = kept.lock())
            acquisition->deliver(frame);
    };
    if (m_device->record().type == OrvTransportLayerTypeU3V)
        return std::make_shared<LibraryStream>(payload, m_settings.previousId, deliver);
    return std::make_shared<GvspStream>(m_device->record(),
                                        GvspStream::Settings{payload, m_settings.headersOnly,
                                                             m_settings.previousId,
                                                             m_settings.transport},
                                        m_settings.receivers, deliver);
}

OrvErrorType Acquisition::announceFrames(std::size_t payload, int bufferCount) {
    for (int i = 0; i < bufferCount; ++i) {
        m_frames.push_back(
            std::make_shared<GenicamFrame>(weak_from_this(), payload, !m_settings.headersOnly));
        if (const OrvErrorType error = queue(m_frames.back()); error != OrvErrorSuccess)
            return error;
    }
    return OrvErrorSuccess;
}

OrvErrorType Acquisition::queue(const std::shared_ptr<GenicamFrame>& frame) {
    const std::lock_guard lock(m_mutex);
    if (!m_stream || m_isOver)
        return OrvErrorInvalidCall;
    if (frame->exchangeQueued(true))
        return OrvErrorInUse;
    m_stream->queue(frame);
    return OrvErrorSuccess;
}

void Acquisition::stop() {
    if (m_stopping.exchange(true))
        return;
    if (m_isStarted && stopCamera() == OrvErrorSuccess) {
        // What the camera sent before it stopped may still be on its way.
        if (const auto stopped = stream())
            std::this_thread::sleep_for(stopped->latency());
    }
    endDelivery();
}

OrvErrorType Acquisition::stopCamera() {
    return m_device->call([self = shared_from_this()](ArvDevice*) {
        const FeatureCatalogue& features = *self->m_device->features();
        const OrvErrorType error = runCommand(features, "AcquisitionStop");
        if (error == OrvErrorSuccess)
            lockSettings(features, false);
        return error;
    });
}

void Acquisition::endDelivery() {
    std::shared_ptr<OrvCPP::IFrameObserver> observer;
    // Waits until the current frame is delivered.
    const std::lock_guard delivery(m_delivery);
    const std::lock_guard lock(m_mutex);
    if (std::exchange(m_isOver, true))
        return;
    if (m_stream)
        m_device->callLater([stream = m_stream] { stream->close(); });
    // Released here: the stream of a lost camera may keep this object alive for seconds.
    observer.swap(m_observer);
}

OrvErrorType queueFrame(const std::shared_ptr<OrvCPP::Frame>& frame) {
    const auto ours = std::dynamic_pointer_cast<GenicamFrame>(frame);
    if (!ours)
        return OrvErrorBadParameter;
    const std::shared_ptr<Acquisition> acquisition = ours->acquisition();
    return acquisition ? acquisition->queue(ours) : OrvErrorInvalidCall;
}

std::shared_ptr<CameraStream> Acquisition::stream() const {
    const std::lock_guard lock(m_mutex);
    return m_stream;
}

gvsp::StreamCounts Acquisition::counts() const {
    const auto counted = stream();
    return counted ? counted->counts() : gvsp::StreamCounts();
}

StreamTransport Acquisition::transport() const {
    const auto opened = stream();
    return opened ? opened->transport() : m_settings.transport;
}

std::optional<std::uint64_t> Acquisition::lastIdOfCamera() const {
    const auto ended = stream();
    return ended ? ended->lastIdOfCamera() : std::nullopt;
}

void Acquisition::deliver(const std::shared_ptr<GenicamFrame>& frame) {
    const std::lock_guard delivery(m_delivery);
    {
        const std::lock_guard lock(m_mutex);
        if (m_isOver)
            return;
    }
    OrvFrameStatusType status = OrvFrameStatusInvalid;
    frame->GetReceiveStatus(status);
    // The stop may have cut the frame.
    if (m_stopping && status != OrvFrameStatusComplete)
        return;
    m_device->noteLife();
    frame->exchangeQueued(false);
    m_observer->FrameReceived(frame);
}

} // namespace orv::aravis
