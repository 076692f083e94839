// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "gvsp/FrameBuffer.h"

#include <cstring>
#include <vector>

/// A frame of which everything is kept.
struct ReceivedFrame : gvsp::FrameBuffer {
    explicit ReceivedFrame(std::size_t size) : memory(size) {}

    void store(std::size_t offset, const std::uint8_t* data, std::size_t size) override {
        if (size > 0)
            std::memcpy(memory.data() + offset, data, size);
    }
    void setContents(const gvsp::FrameContents& received) override { contents = received; }

    std::vector<std::uint8_t> memory;
    gvsp::FrameContents contents;
};
