// SPDX-License-Identifier: BSD-3-Clause
#include "sdk/OrvStreamWrapper.h"

#include "sdk/SdkQuery.h"

OrvStreamWrapper::OrvStreamWrapper(std::shared_ptr<OrvCPP::Stream> handle)
    : m_stream(std::move(handle)) {}

OrvStreamWrapper::~OrvStreamWrapper() = default;

std::shared_ptr<OrvCPP::FeatureContainer> OrvStreamWrapper::GetFeatureContainer() const {
    return m_stream;
}

std::shared_ptr<OrvCPP::Stream>& OrvStreamWrapper::GetHandle() {
    return m_stream;
}

OrvErrorType OrvStreamWrapper::Open() {
    return m_stream ? m_stream->Open() : noObject;
}

OrvErrorType OrvStreamWrapper::Close() {
    return m_stream ? m_stream->Close() : noObject;
}

OrvErrorType OrvStreamWrapper::AnnounceFrame(const std::shared_ptr<OrvCPP::Frame>& frame) {
    return m_stream ? m_stream->AnnounceFrame(frame) : noObject;
}

OrvErrorType OrvStreamWrapper::RevokeFrame(const std::shared_ptr<OrvCPP::Frame>& frame) {
    return m_stream ? m_stream->RevokeFrame(frame) : noObject;
}

OrvErrorType OrvStreamWrapper::RevokeAllFrames() {
    return m_stream ? m_stream->RevokeAllFrames() : noObject;
}

OrvErrorType OrvStreamWrapper::QueueFrame(const std::shared_ptr<OrvCPP::Frame>& frame) {
    return m_stream ? m_stream->QueueFrame(frame) : noObject;
}

OrvErrorType OrvStreamWrapper::FlushQueue() {
    return m_stream ? m_stream->FlushQueue() : noObject;
}

OrvErrorType OrvStreamWrapper::StartCapture() {
    return m_stream ? m_stream->StartCapture() : noObject;
}

OrvErrorType OrvStreamWrapper::EndCapture() {
    return m_stream ? m_stream->EndCapture() : noObject;
}

OrvErrorType OrvStreamWrapper::GetStreamBufferAlignment(std::uint32_t& alignment) const {
    return m_stream ? m_stream->GetStreamBufferAlignment(alignment) : noObject;
}
