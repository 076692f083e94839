// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "OrvCPP/FeatureContainer.h"

namespace OrvCPP {

/// One data stream of an opened camera. Thread-safe.
class ORVCPP_API Stream : public FeatureContainer {
public:
    virtual OrvErrorType Open() = 0;
    virtual OrvErrorType Close() = 0;

    /// Makes a frame known to the stream; it must be announced before it is queued.
    virtual OrvErrorType AnnounceFrame(const std::shared_ptr<Frame>& frame) = 0;
    virtual OrvErrorType RevokeFrame(const std::shared_ptr<Frame>& frame) = 0;
    virtual OrvErrorType RevokeAllFrames() = 0;
    /// Hands a frame to the stream to be filled.
    virtual OrvErrorType QueueFrame(const std::shared_ptr<Frame>& frame) = 0;
    virtual OrvErrorType FlushQueue() = 0;
    virtual OrvErrorType StartCapture() = 0;
    virtual OrvErrorType EndCapture() = 0;
    /// Alignment in bytes that frame buffers must have.
    virtual OrvErrorType GetStreamBufferAlignment(std::uint32_t& alignment) const = 0;
};

} // namespace OrvCPP
