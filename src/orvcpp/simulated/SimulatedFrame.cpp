// SPDX-License-Identifier: BSD-3-Clause
#include "orvcpp/simulated/SimulatedFrame.h"

#include "orvcpp/simulated/FrameSource.h"

#include <utility>

namespace orv::simulated {

SimulatedFrame::SimulatedFrame(std::weak_ptr<FrameSource> source, const Geometry& geometry)
    : m_source(std::move(source)), m_geometry(geometry) {}

OrvErrorType SimulatedFrame::GetReceiveStatus(OrvFrameStatusType& status) const {
    status = m_status;
    return OrvErrorSuccess;
}

OrvErrorType SimulatedFrame::GetBufferSize(std::uint32_t& size) const {
    size = m_geometry.bytes();
    return OrvErrorSuccess;
}

OrvErrorType SimulatedFrame::GetFrameID(std::uint64_t& id) const {
    id = m_id;
    return OrvErrorSuccess;
}

OrvErrorType SimulatedFrame::GetTimestamp(std::uint64_t& nanoseconds) const {
    nanoseconds = m_timestamp;
    return OrvErrorSuccess;
}

OrvErrorType SimulatedFrame::GetImage(const std::uint8_t*& image) const {
    if (!m_pattern) {
        const std::shared_ptr<FrameSource> owner = source();
        if (!owner)
            return OrvErrorNoData;
        m_pattern = owner->pattern();
    }
    image = m_pattern->image(m_id);
    return OrvErrorSuccess;
}

OrvErrorType SimulatedFrame::GetPixelFormat(OrvPixelFormatType& format) const {
    format = m_geometry.format;
    return OrvErrorSuccess;
}

OrvErrorType SimulatedFrame::GetWidth(std::uint32_t& width) const {
    width = m_geometry.width;
    return OrvErrorSuccess;
}

OrvErrorType SimulatedFrame::GetHeight(std::uint32_t& height) const {
    height = m_geometry.height;
    return OrvErrorSuccess;
}

} // namespace orv::simulated
