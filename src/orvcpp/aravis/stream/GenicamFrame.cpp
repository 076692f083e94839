// SPDX-License-Identifier: BSD-3-Clause
#include "orvcpp/aravis/stream/GenicamFrame.h"

#include <cstring>
#include <utility>

namespace orv::aravis {

GenicamFrame::GenicamFrame(std::weak_ptr<Acquisition> acquisition, std::size_t size, bool hasMemory)
    : m_acquisition(std::move(acquisition)), m_size(size), m_memory(hasMemory ? size : 0) {}

void GenicamFrame::store(std::size_t offset, const std::uint8_t* data, std::size_t size) {
    if (!m_memory.empty() && size > 0)
        std::memcpy(m_memory.data() + offset, data, size);
}

OrvErrorType GenicamFrame::GetReceiveStatus(OrvFrameStatusType& status) const {
    status = m_contents.status;
    return OrvErrorSuccess;
}

OrvErrorType GenicamFrame::GetBufferSize(std::uint32_t& size) const {
    size = static_cast<std::uint32_t>(m_size);
    return OrvErrorSuccess;
}

OrvErrorType GenicamFrame::GetFrameID(std::uint64_t& id) const {
    if (!m_contents.id)
        return OrvErrorNotAvailable;
    id = *m_contents.id;
    return OrvErrorSuccess;
}

OrvErrorType GenicamFrame::GetTimestamp(std::uint64_t& nanoseconds) const {
    nanoseconds = m_contents.timestamp;
    return OrvErrorSuccess;
}

OrvErrorType GenicamFrame::GetImage(const std::uint8_t*& image) const {
    if (m_memory.empty())
        return OrvErrorNotAvailable;
    image = m_memory.data();
    return OrvErrorSuccess;
}

OrvErrorType GenicamFrame::GetPixelFormat(OrvPixelFormatType& format) const {
    if (!m_contents.image)
        return OrvErrorNotAvailable;
    format = m_contents.image->format;
    return OrvErrorSuccess;
}

OrvErrorType GenicamFrame::GetWidth(std::uint32_t& width) const {
    if (!m_contents.image)
        return OrvErrorNotAvailable;
    width = m_contents.image->width;
    return OrvErrorSuccess;
}

OrvErrorType GenicamFrame::GetHeight(std::uint32_t& height) const {
    if (!m_contents.image)
        return OrvErrorNotAvailable;
    height = m_contents.image->height;
    return OrvErrorSuccess;
}

} // namespace orv::aravis
