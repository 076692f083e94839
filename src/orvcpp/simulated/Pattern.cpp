// SPDX-License-Identifier: BSD-3-Clause
#include "orvcpp/simulated/Pattern.h"

#include "orvcpp/simulated/PixelFormats.h"

#include <algorithm>
#include <array>
#include <cstddef>

namespace orv::simulated {

namespace {

/// Rows after which the pattern repeats itself; even, so that colour mosaics keep their phase.
constexpr std::uint32_t period = 256;
constexpr std::uint32_t rowsPerFrame = 4;

struct Colour {
    std::uint8_t red, green, blue;
};

/// Diagonal ramps with a grid of discs, in eight bits.
Colour colourAt(std::uint32_t x, std::uint32_t y) {
    const auto ramp = static_cast<std::uint8_t>(x + y);
    const int dx = static_cast<int>(x % period) - 128;
    const int dy = static_cast<int>(y % period) - 128;
    const int distance = dx * dx + dy * dy;
    if (distance < 24 * 24)
        return {250, 230, 90};
    if (distance < 64 * 64)
        return {static_cast<std::uint8_t>(255 - ramp), 70, static_cast<std::uint8_t>(ramp / 2)};
    return {static_cast<std::uint8_t>(ramp / 2), ramp, static_cast<std::uint8_t>(200 - ramp / 2)};
}

unsigned grey(const Colour& colour) {
    return (colour.red * 77U + colour.green * 150U + colour.blue * 29U) >> 8U;
}

void putWord(std::uint8_t* target, unsigned value) {
    target[0] = static_cast<std::uint8_t>(value & 0xFFU);
    target[1] = static_cast<std::uint8_t>(value >> 8U);
}

std::uint8_t mosaic(const Colour& colour, std::uint32_t x, std::uint32_t y) {
    if (y % 2 == 0)
        return x % 2 == 0 ? colour.red : colour.green;
    return x % 2 == 0 ? colour.green : colour.blue;
}

/// Writes pixel \p x of a row that begins at \p row.
void putPixel(std::uint8_t* row, std::uint32_t x, std::uint32_t y, OrvPixelFormatType format) {
    const Colour colour = colourAt(x, y);
    const unsigned level = grey(colour);
    switch (format) {
    case OrvPixelFormatMono8:
        row[x] = static_cast<std::uint8_t>(level);
        break;
    case OrvPixelFormatBayerRG8:
        row[x] = mosaic(colour, x, y);
        break;
    case OrvPixelFormatMono10:
        putWord(row + std::size_t{2} * x, level << 2U);
        break;
    case OrvPixelFormatMono12:
        putWord(row + std::size_t{2} * x, level << 4U);
        break;
    case OrvPixelFormatMono16:
        putWord(row + std::size_t{2} * x, level << 8U);
        break;
    case OrvPixelFormatMono12p: {
        // Two pixels share three bytes; the even one begins the group.
        std::uint8_t* group = row + std::size_t{3} * (x / 2);
        if (x % 2 == 0) {
            group[0] = static_cast<std::uint8_t>(level << 4U);
            group[1] = static_cast<std::uint8_t>(level >> 4U);
        } else {
            group[2] = static_cast<std::uint8_t>(level);
        }
        break;
    }
    case OrvPixelFormatRGB8:
        row[std::size_t{3} * x] = colour.red;
        row[std::size_t{3} * x + 1] = colour.green;
        row[std::size_t{3} * x + 2] = colour.blue;
        break;
    }
}

} // namespace

std::uint32_t Geometry::bytesPerRow() const {
    return static_cast<std::uint32_t>(width * bitsPerPixel(format) / 8);
}

Pattern::Pattern(const Geometry& geometry)
    : m_bytesPerRow(geometry.bytesPerRow()),
      m_pixels(std::size_t{m_bytesPerRow} * (geometry.height + period)) {
    const std::uint32_t rows = geometry.height + period;
    for (std::uint32_t y = 0; y < std::min(rows, period); ++y) {
        std::uint8_t* row = m_pixels.data() + std::size_t{y} * m_bytesPerRow;
        for (std::uint32_t x = 0; x < geometry.width; ++x)
            putPixel(row, x, y, geometry.format);
    }
    const std::size_t block = std::size_t{period} * m_bytesPerRow;
    for (std::size_t filled = block; filled < m_pixels.size(); filled += block)
        std::copy_n(m_pixels.begin(), std::min(block, m_pixels.size() - filled),
                    m_pixels.begin() + static_cast<std::ptrdiff_t>(filled));
}

const std::uint8_t* Pattern::image(std::uint64_t frameNumber) const {
    return m_pixels.data() + (frameNumber * rowsPerFrame % period) * m_bytesPerRow;
}

std::shared_ptr<const Pattern> PatternStore::pattern(const Geometry& geometry) {
    const std::lock_guard lock(m_mutex);
    std::weak_ptr<const Pattern>& kept = m_patterns[geometry];
    std::shared_ptr<const Pattern> found = kept.lock();
    if (!found) {
        found = std::make_shared<const Pattern>(geometry);
        kept = found;
    }
    return found;
}

} // namespace orv::simulated
