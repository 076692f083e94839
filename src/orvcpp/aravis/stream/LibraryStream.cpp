// SPDX-License-Identifier: BSD-3-Clause
#include "orvcpp/aravis/stream/LibraryStream.h"

#include "orvcpp/aravis/LibraryError.h"
#include "orvcpp/core/SdkThread.h"

#include <string>
#include <utility>

namespace orv::aravis {

namespace {

/// One of the library's counts; 0 when the stream does not have it.
std::uint64_t readCount(ArvStream* stream, const std::string& name) {
    for (guint i = 0; i < arv_stream_get_n_infos(stream); ++i) {
        if (arv_stream_get_info_name(stream, i) == name)
            return arv_stream_get_info_uint64(stream, i);
    }
    return 0;
}

gvsp::StreamCounts readCounts(ArvStream* stream) {
    const auto count = [stream](const char* name) {
        return readCount(stream, name);
    };
    gvsp::StreamCounts counts;
    counts.framesComplete = count("n_completed_buffers");
    counts.framesIncomplete = count("n_failures");
    counts.framesWithoutBuffer = count("n_underruns");
    counts.bytes = count("n_transferred_bytes");
    return counts;
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

std::optional<gvsp::Image> imageOf(ArvBuffer* buffer) {
    // An incomplete frame may lack the image's description.
    if (arv_buffer_get_status(buffer) != ARV_BUFFER_STATUS_SUCCESS ||
        arv_buffer_get_n_parts(buffer) == 0 ||
        arv_buffer_get_part_data_type(buffer, 0) != ARV_BUFFER_PART_DATA_TYPE_2D_IMAGE)
        return std::nullopt;
    return gvsp::Image{
        static_cast<std::uint32_t>(arv_buffer_get_part_width(buffer, 0)),
        static_cast<std::uint32_t>(arv_buffer_get_part_height(buffer, 0)),
        static_cast<OrvPixelFormatType>(arv_buffer_get_part_pixel_format(buffer, 0))};
}

} // namespace

LibraryStream::~LibraryStream() {
    LibraryStream::close();
}

OrvErrorType LibraryStream::open(ArvDevice* device) {
    LibraryError failure;
    GObjectPtr<ArvStream> stream(
        arv_device_create_stream(device, &LibraryStream::onStream, this, failure.out()));
    if (!stream)
        return failure.code() != OrvErrorSuccess ? failure.code() : OrvErrorUnspecified;
    const std::lock_guard lock(m_mutex);
    m_stream = std::move(stream);
    return OrvErrorSuccess;
}

void LibraryStream::close() {
    GObjectPtr<ArvStream> ending;
    const std::lock_guard lock(m_mutex);
    if (!m_stream)
        return;
    m_lastCounts = readCounts(m_stream.get());
    // Frames that the stream's end aborts find no stream, and are not delivered.
    ending = std::move(m_stream);
}

void LibraryStream::queue(std::shared_ptr<GenicamFrame> frame) {
    const std::lock_guard lock(m_mutex);
    if (!m_stream)
        return;
    Buffer& known = m_buffers[frame.get()];
    if (!known.buffer) {
        known.buffer.reset(
            arv_buffer_new_full(frame->size(), frame->memory(), frame.get(), nullptr));
        known.frame = std::move(frame);
    }
    // The stream takes this reference and returns it with the filled buffer.
    g_object_ref(known.buffer.get());
    arv_stream_push_buffer(m_stream.get(), known.buffer.get());
}

gvsp::StreamCounts LibraryStream::counts() const {
    const std::lock_guard lock(m_mutex);
    return m_stream ? readCounts(m_stream.get()) : m_lastCounts;
}

std::optional<std::uint64_t> LibraryStream::lastIdOfCamera() const {
    const std::lock_guard lock(m_mutex);
    return m_ids.lastOfCamera();
}

void LibraryStream::onStream(void* stream, ArvStreamCallbackType type, ArvBuffer* /*buffer*/) {
    if (type == ARV_STREAM_CALLBACK_TYPE_INIT)
        setCurrentSdkThread(SdkThread::Frames);
    else if (type == ARV_STREAM_CALLBACK_TYPE_BUFFER_DONE)
        static_cast<LibraryStream*>(stream)->bufferDone();
}

void LibraryStream::bufferDone() {
    std::shared_ptr<GenicamFrame> frame;
    {
        const std::lock_guard lock(m_mutex);
        const GObjectPtr<ArvBuffer> buffer(m_stream ? arv_stream_try_pop_buffer(m_stream.get())
                                                    : nullptr);
        if (!buffer)
            return;
        const auto known = m_buffers.find(
            static_cast<const GenicamFrame*>(arv_buffer_get_user_data(buffer.get())));
        if (known == m_buffers.end())
            return;
        frame = known->second.frame;
        frame->setContents(contentsOf(buffer.get()));
    }
    m_deliver(std::move(frame));
}

gvsp::FrameContents LibraryStream::contentsOf(ArvBuffer* buffer) {
    gvsp::FrameContents contents;
    std::size_t size = 0;
    arv_buffer_get_data(buffer, &size);
    contents.status = statusOf(arv_buffer_get_status(buffer));
    if (contents.status == OrvFrameStatusComplete && size != m_payload)
        contents.status = OrvFrameStatusTooSmall;
    contents.id =
        m_ids.extend(arv_buffer_get_frame_id(buffer), contents.status == OrvFrameStatusComplete);
    contents.timestamp = arv_buffer_get_timestamp(buffer);
    contents.image = imageOf(buffer);
    return contents;
}

} // namespace orv::aravis
