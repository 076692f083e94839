// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "OrvCPP/Frame.h"

#include <cstdint>
#include <memory>

/// A delivered frame. One wrapper is filled again and again through GetHandle, so that the frame
/// callback allocates nothing; it is therefore reentrant, not thread-safe.
class OrvFrameWrapper {
public:
    explicit OrvFrameWrapper(std::shared_ptr<OrvCPP::Frame> frame = {});
    virtual ~OrvFrameWrapper();

    OrvFrameWrapper(const OrvFrameWrapper&) = delete;
    OrvFrameWrapper& operator=(const OrvFrameWrapper&) = delete;

    virtual std::shared_ptr<OrvCPP::Frame>& GetHandle();
    /// Size of the frame's buffer, in bytes.
    virtual OrvErrorType GetBufferSize(std::uint32_t& size) const;
    virtual OrvErrorType GetFrameID(std::uint64_t& id) const;
    virtual OrvErrorType GetReceiveStatus(OrvFrameStatusType& status) const;
    /// Time of the frame on the camera's clock, in nanoseconds.
    virtual OrvErrorType GetTimestamp(std::uint64_t& nanoseconds) const;

private:
    std::shared_ptr<OrvCPP::Frame> m_frame;
};
