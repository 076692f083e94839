// SPDX-License-Identifier: BSD-3-Clause
#include "sdk/OrvFrameWrapper.h"

#include "sdk/SdkQuery.h"

OrvFrameWrapper::OrvFrameWrapper(std::shared_ptr<OrvCPP::Frame> frame)
    : m_frame(std::move(frame)) {}

OrvFrameWrapper::~OrvFrameWrapper() = default;

std::shared_ptr<OrvCPP::Frame>& OrvFrameWrapper::GetHandle() {
    return m_frame;
}

OrvErrorType OrvFrameWrapper::GetBufferSize(std::uint32_t& size) const {
    return m_frame ? m_frame->GetBufferSize(size) : noObject;
}

OrvErrorType OrvFrameWrapper::GetFrameID(std::uint64_t& id) const {
    return m_frame ? m_frame->GetFrameID(id) : noObject;
}

OrvErrorType OrvFrameWrapper::GetReceiveStatus(OrvFrameStatusType& status) const {
    return m_frame ? m_frame->GetReceiveStatus(status) : noObject;
}

OrvErrorType OrvFrameWrapper::GetTimestamp(std::uint64_t& nanoseconds) const {
    return m_frame ? m_frame->GetTimestamp(nanoseconds) : noObject;
}
