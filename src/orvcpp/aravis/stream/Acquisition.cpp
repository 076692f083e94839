// SPDX-License-Identifier: BSD-3-Clause
#include "orvcpp/aravis/stream/Acquisition.h"

#include "orvcpp/aravis/LibraryError.h"
#include "orvcpp/aravis/device/NodeAccess.h"
#include "orvcpp/aravis/stream/OpenedStream.h"
#include "orvcpp/core/SdkLog.h"
#include "orvcpp/core/SdkThread.h"

#include <utility>

namespace orv::aravis {

namespace {

/// A slower camera opens its stream when it starts.
constexpr std::chrono::milliseconds preparationLimit{1000};
constexpr std::int64_t largestPayload = std::int64_t{1} << 31;
/// Name of a count that only some streams have.
constexpr const char* sizeMismatchCount = "n_size_mismatch_errors";

std::uint64_t firstId(const CameraRecord& record) {
    return record.type == OrvTransportLayerTypeGEV ? 1 : 0;
}

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

/// Locks the settings that must not change during an acquisition, on cameras with this feature.
void lockSettings(const FeatureCatalogue& features, std::int64_t locked) {
    if (const auto feature = features.find("TLParamsLocked"))
        node::set(*feature, locked);
}

std::vector<StreamCount> readCounts(ArvStream* stream) {
    std::vector<StreamCount> counts;
    for (guint i = 0; i < arv_stream_get_n_infos(stream); ++i) {
        if (arv_stream_get_info_type(stream, i) == G_TYPE_UINT64)
            counts.push_back({arv_stream_get_info_name(stream, i),
                              static_cast<std::int64_t>(arv_stream_get_info_uint64(stream, i))});
    }
    return counts;
}

/// Index of a stream's count of frames of a wrong size; empty when it has none.
std::optional<guint> findMismatchInfo(ArvStream* stream) {
    for (guint i = 0; i < arv_stream_get_n_infos(stream); ++i) {
        if (std::string(arv_stream_get_info_name(stream, i)) == sizeMismatchCount)
            return i;
    }
    return std::nullopt;
}

OrvFrameStatusType statusOf(ArvBufferStatus status) {
    switch (status) {
    case ARV_BUFFER_STATUS_SUCCESS:
        return OrvFrameStatusComplete;
    case ARV_BUFFER_STATUS_TIMEOUT:
    case ARV_BUFFER_STATUS_MISSING_PACKETS:
    case ARV_BUFFER_STATUS_FILLING:
    case ARV_BUFFER_STATUS_ABORTED:
        return OrvFrameStatusIncomplete;
    case ARV_BUFFER_STATUS_SIZE_MISMATCH:
        return OrvFrameStatusTooSmall;
    case ARV_BUFFER_STATUS_WRONG_PACKET_ID:
    case ARV_BUFFER_STATUS_CLEARED:
    case ARV_BUFFER_STATUS_UNKNOWN:
        break;
    }
    return OrvFrameStatusInvalid;
}

} // namespace

Acquisition::Acquisition(std::shared_ptr<DeviceConnection> device, StreamTransport path)
    : m_device(std::move(device)), m_path(path) {}

Acquisition::~Acquisition() = default;

void Acquisition::prepare() {
    m_device->call(
        [self = shared_from_this()](ArvDevice* device) {
            return self->m_stopping ? OrvErrorSuccess : self->makeStream(device);
        },
        preparationLimit);
}

OrvErrorType Acquisition::start(int bufferCount, std::shared_ptr<OrvCPP::IFrameObserver> observer,
                                std::optional<std::uint64_t> previousId) {
    m_isStarted = true;
    m_observer = std::move(observer);
    m_ids.emplace(firstId(m_device->record()), previousId);
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
    if (const OrvErrorType error = readPayload(features, m_payload); error != OrvErrorSuccess)
        return error;
    if (!reusePrepared(device)) {
        if (const OrvErrorType error = makeStream(device); error != OrvErrorSuccess)
            return error;
    }
    if (m_device->record().type == OrvTransportLayerTypeGEV)
        logInfo(m_device->record().id() + ": Frames come through a " + path().description() + '.');
    lockSettings(features, 1);
    OrvErrorType error = announceFrames(bufferCount);
    if (error == OrvErrorSuccess)
        error = runCommand(features, "AcquisitionStart");
    if (error != OrvErrorSuccess || m_stopping)
        lockSettings(features, 0);
    return error;
}

bool Acquisition::reusePrepared(ArvDevice* device) const {
    std::unique_lock lock(m_mutex);
    ArvStream* const prepared = m_stream.get();
    const int packetSize = m_packetSize;
    const StreamTransport path = m_path;
    // Not held during the request: streams end on the device's thread only, which is this one.
    lock.unlock();
    return prepared && reuseStream(device, prepared, packetSize, path);
}

OrvErrorType Acquisition::makeStream(ArvDevice* device) {
    StreamTransport path = this->path();
    {
        // Ends the old stream first: each stream sets the camera's destination.
        GObjectPtr<ArvStream> unfit;
        const std::lock_guard lock(m_mutex);
        unfit.swap(m_stream);
    }
    LibraryError failure;
    OpenedStream opened = openStream(device, path, &Acquisition::onStream, this, failure);
    if (!opened.stream)
        return failure.code() != OrvErrorSuccess ? failure.code() : OrvErrorUnspecified;
    const std::lock_guard lock(m_mutex);
    if (m_stopping)
        return OrvErrorInvalidCall;
    m_path = path;
    m_packetSize = opened.packetSize;
    m_stream = std::move(opened.stream);
    m_mismatchInfo = findMismatchInfo(m_stream.get());
    return OrvErrorSuccess;
}

OrvErrorType Acquisition::announceFrames(int bufferCount) {
    for (int i = 0; i < bufferCount; ++i) {
        m_frames.push_back(std::make_shared<GenicamFrame>(weak_from_this(), m_payload));
        if (const OrvErrorType error = queue(*m_frames.back()); error != OrvErrorSuccess)
            return error;
    }
    return OrvErrorSuccess;
}

OrvErrorType Acquisition::queue(GenicamFrame& frame) {
    const std::lock_guard lock(m_mutex);
    if (!m_stream)
        return OrvErrorInvalidCall;
    if (frame.m_isQueued.exchange(true))
        return OrvErrorInUse;
    // The stream takes this reference and returns it with the filled buffer.
    g_object_ref(frame.m_buffer.get());
    arv_stream_push_buffer(m_stream.get(), frame.m_buffer.get());
    return OrvErrorSuccess;
}

void Acquisition::stop() {
    if (m_stopping.exchange(true))
        return;
    if (!m_isStarted) {
        endDelivery();
        return;
    }
    m_device->call([self = shared_from_this()](ArvDevice*) {
        const FeatureCatalogue& features = *self->m_device->features();
        const OrvErrorType error = runCommand(features, "AcquisitionStop");
        if (error == OrvErrorSuccess)
            lockSettings(features, 0);
        return error;
    });
    endDelivery();
}

void Acquisition::endDelivery() {
    GObjectPtr<ArvStream> ending;
    std::shared_ptr<OrvCPP::IFrameObserver> observer;
    {
        // Waits until the current frame is delivered.
        const std::lock_guard delivery(m_delivery);
        const std::lock_guard lock(m_mutex);
        if (!m_stream)
            return;
        m_lastCounts = readCounts(m_stream.get());
        ending = std::move(m_stream);
        // Released here: the library may keep this object alive for seconds.
        observer.swap(m_observer);
    }
    // Ending the stream of a lost camera takes the library seconds, in which it may write to the
    // frames and call back. So this object lives until then.
    m_device->callLater([self = shared_from_this(), stream = std::shared_ptr<ArvStream>(std::move(
                                                        ending))]() mutable { stream.reset(); });
}

OrvErrorType queueFrame(const std::shared_ptr<OrvCPP::Frame>& frame) {
    const auto ours = std::dynamic_pointer_cast<GenicamFrame>(frame);
    if (!ours)
        return OrvErrorBadParameter;
    const std::shared_ptr<Acquisition> acquisition = ours->acquisition();
    return acquisition ? acquisition->queue(*ours) : OrvErrorInvalidCall;
}

std::vector<StreamCount> Acquisition::counts() const {
    const std::lock_guard lock(m_mutex);
    return m_stream ? readCounts(m_stream.get()) : m_lastCounts;
}

StreamTransport Acquisition::path() const {
    const std::lock_guard lock(m_mutex);
    return m_path;
}

std::optional<std::uint64_t> Acquisition::lastIdOfCamera() const {
    return m_ids ? m_ids->lastOfCamera() : std::nullopt;
}

void Acquisition::onStream(void* acquisition, ArvStreamCallbackType type, ArvBuffer* /*buffer*/) {
    if (type == ARV_STREAM_CALLBACK_TYPE_INIT)
        setCurrentSdkThread(SdkThread::Frames);
    else if (type == ARV_STREAM_CALLBACK_TYPE_BUFFER_DONE)
        static_cast<Acquisition*>(acquisition)->bufferDone();
}

void Acquisition::bufferDone() {
    const std::lock_guard delivery(m_delivery);
    GObjectPtr<ArvBuffer> buffer;
    {
        const std::lock_guard lock(m_mutex);
        // Frames aborted by the stream's end are dropped (m_stream is null then); frames that
        // arrive during the stop are delivered.
        if (!m_stream)
            return;
        buffer.reset(arv_stream_try_pop_buffer(m_stream.get()));
    }
    // During the stop, incomplete frames are dropped: the stop may have cut them.
    if (!buffer || (m_stopping && arv_buffer_get_status(buffer.get()) != ARV_BUFFER_STATUS_SUCCESS))
        return;
    deliver(*static_cast<GenicamFrame*>(const_cast<void*>(arv_buffer_get_user_data(buffer.get()))));
}

void Acquisition::deliver(GenicamFrame& frame) {
    m_device->noteLife();
    ArvBuffer* const buffer = frame.m_buffer.get();
    frame.m_isQueued.store(false);
    frame.m_status = statusOf(arv_buffer_get_status(buffer));
    std::size_t size = 0;
    arv_buffer_get_data(buffer, &size);
    const std::uint64_t mismatches =
        m_mismatchInfo ? arv_stream_get_info_uint64(m_stream.get(), *m_mismatchInfo) : 0;
    if (frame.m_status == OrvFrameStatusComplete &&
        (size != m_payload || mismatches != m_sizeMismatches))
        frame.m_status = OrvFrameStatusTooSmall;
    m_sizeMismatches = mismatches;
    frame.m_id =
        m_ids->extend(arv_buffer_get_frame_id(buffer), frame.m_status == OrvFrameStatusComplete);
    frame.m_timestamp = arv_buffer_get_timestamp(buffer);
    frame.readImage();
    m_observer->FrameReceived(frame.shared_from_this());
}

} // namespace orv::aravis
