// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "orvcpp/core/MemoryContainer.h"

#include "OrvCPP/Stream.h"

namespace orv {

/// The stream of an opened camera. Frames come through the camera's continuous acquisition only:
/// capturing into frames of the user's own answers OrvErrorNotSupported. Thread-safe.
class MemoryStream final : public MemoryContainer<OrvCPP::Stream> {
public:
    /// Queues a frame to the acquisition that it came from.
    using QueueFrameFunction = OrvErrorType (*)(const std::shared_ptr<OrvCPP::Frame>& frame);

    /// \p alignment of a frame's memory, in bytes.
    MemoryStream(std::shared_ptr<FeatureModule> module, std::uint32_t alignment,
                 QueueFrameFunction queueFrame);

    /// OrvErrorAlreadyDone: a stream is open as long as its camera is.
    OrvErrorType Open() override;
    OrvErrorType Close() override;
    OrvErrorType AnnounceFrame(const std::shared_ptr<OrvCPP::Frame>& frame) override;
    OrvErrorType RevokeFrame(const std::shared_ptr<OrvCPP::Frame>& frame) override;
    OrvErrorType RevokeAllFrames() override;
    OrvErrorType QueueFrame(const std::shared_ptr<OrvCPP::Frame>& frame) override;
    OrvErrorType FlushQueue() override;
    OrvErrorType StartCapture() override;
    OrvErrorType EndCapture() override;
    OrvErrorType GetStreamBufferAlignment(std::uint32_t& alignment) const override;

private:
    /// \p code while the camera is open, the error of a closed camera otherwise.
    OrvErrorType whileOpen(OrvErrorType code) const;

    const std::uint32_t m_alignment;
    const QueueFrameFunction m_queueFrame;
};

} // namespace orv
