// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "OrvCPP/Frame.h"

#include <cstdint>

/// A frame that answers at once; each answer can be made to fail.
class FakeFrame : public OrvCPP::Frame {
public:
    explicit FakeFrame(std::uint64_t number = 0) : id(number) {}

    OrvErrorType GetReceiveStatus(OrvFrameStatusType& out) const override {
        out = status;
        return statusResult;
    }
    OrvErrorType GetBufferSize(std::uint32_t& out) const override {
        out = size;
        return OrvErrorSuccess;
    }
    OrvErrorType GetFrameID(std::uint64_t& out) const override {
        out = id;
        return idResult;
    }
    OrvErrorType GetTimestamp(std::uint64_t&) const override { return OrvErrorNotAvailable; }
    OrvErrorType GetImage(const std::uint8_t*&) const override { return OrvErrorNotAvailable; }
    OrvErrorType GetPixelFormat(OrvPixelFormatType&) const override { return OrvErrorNotAvailable; }
    OrvErrorType GetWidth(std::uint32_t&) const override { return OrvErrorNotAvailable; }
    OrvErrorType GetHeight(std::uint32_t&) const override { return OrvErrorNotAvailable; }

    std::uint64_t id;
    std::uint32_t size = 1000;
    OrvFrameStatusType status = OrvFrameStatusComplete;
    OrvErrorType statusResult = OrvErrorSuccess;
    OrvErrorType idResult = OrvErrorSuccess;
};
