// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "gvsp/Gvsp.h"

#include <cstddef>
#include <cstdint>
#include <optional>

namespace gvsp {

/// What a receiver has found out about a frame.
struct FrameContents {
    OrvFrameStatusType status = OrvFrameStatusInvalid;
    /// All packets from the leader to the trailer have come, whatever the size of the payload. Of
    /// GigE Vision only.
    bool isWhole = false;
    /// Empty for an incomplete frame whose number did not come.
    std::optional<std::uint64_t> id;
    /// In nanoseconds of the camera's clock; 0 without one.
    std::uint64_t timestamp = 0;
    /// Empty without a complete image.
    std::optional<Image> image;
};

/// A frame that is being received. Not thread-safe.
class FrameBuffer {
public:
    FrameBuffer() = default;
    virtual ~FrameBuffer() = default;
    FrameBuffer(const FrameBuffer&) = delete;
    FrameBuffer& operator=(const FrameBuffer&) = delete;

    /// Takes data of the frame. \p offset and \p size are within the payload.
    virtual void store(std::size_t offset, const std::uint8_t* data, std::size_t size) = 0;
    virtual void setContents(const FrameContents& contents) = 0;
};

} // namespace gvsp
