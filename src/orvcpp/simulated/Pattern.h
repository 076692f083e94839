// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "OrvCPP/OrvTypes.h"

#include <cstdint>
#include <map>
#include <memory>
#include <mutex>
#include <tuple>
#include <vector>

namespace orv::simulated {

/// Size and format of an image.
struct Geometry {
    std::uint32_t width = 0;
    std::uint32_t height = 0;
    OrvPixelFormatType format = OrvPixelFormatMono8;

    std::uint32_t bytesPerRow() const;
    std::uint32_t bytes() const { return bytesPerRow() * height; }
    bool operator<(const Geometry& other) const {
        return std::tie(width, height, format) < std::tie(other.width, other.height, other.format);
    }
};

/// A periodic image, higher than a frame. Each frame starts at another row, so that the picture
/// moves without drawing. Immutable.
class Pattern {
public:
    explicit Pattern(const Geometry& geometry);

    /// First byte of the picture of the frame with this number.
    const std::uint8_t* image(std::uint64_t frameNumber) const;

private:
    std::uint32_t m_bytesPerRow;
    std::vector<std::uint8_t> m_pixels;
};

/// Draws each pattern at the first use and shares it among cameras of the same geometry.
/// Thread-safe.
class PatternStore {
public:
    std::shared_ptr<const Pattern> pattern(const Geometry& geometry);

private:
    std::mutex m_mutex;
    /// Guarded by the mutex.
    std::map<Geometry, std::weak_ptr<const Pattern>> m_patterns;
};

} // namespace orv::simulated
