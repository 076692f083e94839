// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "OrvCPP/Forward.h"
#include "OrvCPP/OrvExport.h"
#include "OrvCPP/OrvTypes.h"

#include <cstdint>
#include <memory>

namespace OrvCPP {

/// One frame buffer with what was received into it. It belongs to the receiver from the callback
/// until it is queued again, and to the SDK otherwise.
class ORVCPP_API Frame {
public:
    virtual ~Frame() = default;

    virtual OrvErrorType GetReceiveStatus(OrvFrameStatusType& status) const = 0;
    /// Size of the buffer, in bytes.
    virtual OrvErrorType GetBufferSize(std::uint32_t& size) const = 0;
    /// Number that the camera gave the frame: from 1 on GigE Vision, from 0 on USB3 Vision.
    virtual OrvErrorType GetFrameID(std::uint64_t& id) const = 0;
    /// Time of the frame on the camera's clock, in nanoseconds.
    virtual OrvErrorType GetTimestamp(std::uint64_t& nanoseconds) const = 0;
    /// First byte of the image; valid while the frame belongs to the receiver.
    virtual OrvErrorType GetImage(const std::uint8_t*& image) const = 0;
    virtual OrvErrorType GetPixelFormat(OrvPixelFormatType& format) const = 0;
    virtual OrvErrorType GetWidth(std::uint32_t& width) const = 0;
    virtual OrvErrorType GetHeight(std::uint32_t& height) const = 0;
};

/// Told of every frame that arrives.
class ORVCPP_API IFrameObserver {
public:
    virtual ~IFrameObserver() = default;
    /// Called on one of the SDK's own threads, one frame at a time per camera.
    virtual void FrameReceived(const std::shared_ptr<Frame>& frame) = 0;
};

} // namespace OrvCPP
