// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "OrvCPP/Stream.h"
#include "sdk/OrvFeatureContainerWrapper.h"

#include <cstdint>

/// A data stream of an opened camera.
class OrvStreamWrapper : public OrvFeatureContainerWrapper {
public:
    explicit OrvStreamWrapper(std::shared_ptr<OrvCPP::Stream> handle = {});
    ~OrvStreamWrapper() override;

    std::shared_ptr<OrvCPP::FeatureContainer> GetFeatureContainer() const override;
    virtual std::shared_ptr<OrvCPP::Stream>& GetHandle();
    virtual OrvErrorType Open();
    virtual OrvErrorType Close();
    virtual OrvErrorType AnnounceFrame(const std::shared_ptr<OrvCPP::Frame>& frame);
    virtual OrvErrorType RevokeFrame(const std::shared_ptr<OrvCPP::Frame>& frame);
    virtual OrvErrorType RevokeAllFrames();
    virtual OrvErrorType QueueFrame(const std::shared_ptr<OrvCPP::Frame>& frame);
    virtual OrvErrorType FlushQueue();
    virtual OrvErrorType StartCapture();
    virtual OrvErrorType EndCapture();
    virtual OrvErrorType GetStreamBufferAlignment(std::uint32_t& alignment) const;

private:
    std::shared_ptr<OrvCPP::Stream> m_stream;
};
