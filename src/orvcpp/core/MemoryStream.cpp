// SPDX-License-Identifier: BSD-3-Clause
#include "orvcpp/core/MemoryStream.h"

#include <utility>

namespace orv {

MemoryStream::MemoryStream(std::shared_ptr<FeatureModule> module, std::uint32_t alignment,
                           QueueFrameFunction queueFrame)
    : MemoryContainer(std::move(module)), m_alignment(alignment), m_queueFrame(queueFrame) {}

OrvErrorType MemoryStream::whileOpen(OrvErrorType code) const {
    return module().read([code] { return code; });
}

OrvErrorType MemoryStream::Open() {
    return whileOpen(OrvErrorAlreadyDone);
}

OrvErrorType MemoryStream::Close() {
    return whileOpen(OrvErrorNotSupported);
}

OrvErrorType MemoryStream::AnnounceFrame(const std::shared_ptr<OrvCPP::Frame>& /*frame*/) {
    return whileOpen(OrvErrorNotSupported);
}

OrvErrorType MemoryStream::RevokeFrame(const std::shared_ptr<OrvCPP::Frame>& /*frame*/) {
    return whileOpen(OrvErrorNotSupported);
}

OrvErrorType MemoryStream::RevokeAllFrames() {
    return whileOpen(OrvErrorNotSupported);
}

OrvErrorType MemoryStream::QueueFrame(const std::shared_ptr<OrvCPP::Frame>& frame) {
    return m_queueFrame(frame);
}

OrvErrorType MemoryStream::FlushQueue() {
    return whileOpen(OrvErrorNotSupported);
}

OrvErrorType MemoryStream::StartCapture() {
    return whileOpen(OrvErrorNotSupported);
}

OrvErrorType MemoryStream::EndCapture() {
    return whileOpen(OrvErrorNotSupported);
}

OrvErrorType MemoryStream::GetStreamBufferAlignment(std::uint32_t& alignment) const {
    const OrvErrorType error = whileOpen(OrvErrorSuccess);
    if (error == OrvErrorSuccess)
        alignment = m_alignment;
    return error;
}

} // namespace orv
