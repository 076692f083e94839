// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "OrvCPP/Frame.h"
#include "orvcpp/simulated/Pattern.h"

#include <cstdint>
#include <memory>

namespace orv::simulated {

class FrameSource;

/// One of an acquisition's frames. Its fields are written by the link's thread while the receiver
/// does not own the frame, so the queries need no lock.
class SimulatedFrame final : public OrvCPP::Frame {
public:
    SimulatedFrame(std::weak_ptr<FrameSource> source, const Geometry& geometry);

    OrvErrorType GetReceiveStatus(OrvFrameStatusType& status) const override;
    OrvErrorType GetBufferSize(std::uint32_t& size) const override;
    OrvErrorType GetFrameID(std::uint64_t& id) const override;
    OrvErrorType GetTimestamp(std::uint64_t& nanoseconds) const override;
    OrvErrorType GetImage(const std::uint8_t*& image) const override;
    OrvErrorType GetPixelFormat(OrvPixelFormatType& format) const override;
    OrvErrorType GetWidth(std::uint32_t& width) const override;
    OrvErrorType GetHeight(std::uint32_t& height) const override;

    /// Acquisition that the frame belongs to; empty when that has ended.
    std::shared_ptr<FrameSource> source() const { return m_source.lock(); }

private:
    friend class FrameSource;

    const std::weak_ptr<FrameSource> m_source;
    const Geometry m_geometry;
    std::uint64_t m_id = 0;
    std::uint64_t m_timestamp = 0;
    OrvFrameStatusType m_status = OrvFrameStatusInvalid;
    /// Set by the first GetImage(); keeps the image alive as long as the frame.
    mutable std::shared_ptr<const Pattern> m_pattern;
    /// Guarded by the source's mutex.
    bool m_isQueued = true;
};

} // namespace orv::simulated
