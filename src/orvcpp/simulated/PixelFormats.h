// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "OrvCPP/OrvTypes.h"

#include <array>
#include <cstdint>

namespace orv::simulated {

struct PixelFormatName {
    OrvPixelFormatType format;
    const char* name;
};

/// Every pixel format that a simulated camera may have.
constexpr std::array<PixelFormatName, 7> pixelFormatNames{{{OrvPixelFormatMono8, "Mono8"},
                                                           {OrvPixelFormatMono10, "Mono10"},
                                                           {OrvPixelFormatMono12, "Mono12"},
                                                           {OrvPixelFormatMono12p, "Mono12p"},
                                                           {OrvPixelFormatMono16, "Mono16"},
                                                           {OrvPixelFormatBayerRG8, "BayerRG8"},
                                                           {OrvPixelFormatRGB8, "RGB8"}}};

/// Bits that a pixel takes in the buffer: the format's code carries them.
constexpr std::int64_t bitsPerPixel(OrvPixelFormatType format) {
    return (format >> 16U) & 0xFFU;
}

} // namespace orv::simulated
