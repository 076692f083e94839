// SPDX-License-Identifier: BSD-3-Clause
#include "orvcpp/aravis/stream/GenicamFrame.h"

#include <utility>

namespace orv::aravis {

GenicamFrame::GenicamFrame(std::weak_ptr<Acquisition> acquisition, std::size_t size)
    : m_acquisition(std::move(acquisition)), m_memory(size),
      m_buffer(arv_buffer_new_full(size, m_memory.data(), this, nullptr)) {}

void GenicamFrame::readImage() {
    m_image.reset();
    ArvBuffer* const buffer = m_buffer.get();
    // An incomplete frame may lack the image's description.
    if (arv_buffer_get_status(buffer) != ARV_BUFFER_STATUS_SUCCESS ||
        arv_buffer_get_n_parts(buffer) == 0 ||
        arv_buffer_get_part_data_type(buffer, 0) != ARV_BUFFER_PART_DATA_TYPE_2D_IMAGE)
        return;
    m_image = Image{static_cast<std::uint32_t>(arv_buffer_get_part_width(buffer, 0)),
                    static_cast<std::uint32_t>(arv_buffer_get_part_height(buffer, 0)),
                    static_cast<OrvPixelFormatType>(arv_buffer_get_part_pixel_format(buffer, 0))};
}

OrvErrorType GenicamFrame::GetReceiveStatus(OrvFrameStatusType& status) const {
    status = m_status;
    return OrvErrorSuccess;
}

OrvErrorType GenicamFrame::GetBufferSize(std::uint32_t& size) const {
    size = static_cast<std::uint32_t>(m_memory.size());
    return OrvErrorSuccess;
}

OrvErrorType GenicamFrame::GetFrameID(std::uint64_t& id) const {
    if (!m_id)
        return OrvErrorNotAvailable;
    id = *m_id;
    return OrvErrorSuccess;
}

OrvErrorType GenicamFrame::GetTimestamp(std::uint64_t& nanoseconds) const {
    nanoseconds = m_timestamp;
    return OrvErrorSuccess;
}

OrvErrorType GenicamFrame::GetImage(const std::uint8_t*& image) const {
    image = m_memory.data();
    return OrvErrorSuccess;
}

OrvErrorType GenicamFrame::GetPixelFormat(OrvPixelFormatType& format) const {
    if (!m_image)
        return OrvErrorNotAvailable;
    format = m_image->format;
    return OrvErrorSuccess;
}

OrvErrorType GenicamFrame::GetWidth(std::uint32_t& width) const {
    if (!m_image)
        return OrvErrorNotAvailable;
    width = m_image->width;
    return OrvErrorSuccess;
}

OrvErrorType GenicamFrame::GetHeight(std::uint32_t& height) const {
    if (!m_image)
        return OrvErrorNotAvailable;
    height = m_image->height;
    return OrvErrorSuccess;
}

} // namespace orv::aravis
