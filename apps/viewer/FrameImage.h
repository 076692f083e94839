// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "OrvCPP/OrvTypes.h"

#include <QImage>
#include <QString>

#include <cstddef>
#include <cstdint>

namespace OrvCPP {
class Frame;
}

namespace viewer {

/// Pixels as a camera sends them, row after row without padding. The memory is not owned.
struct RawImage {
    const std::uint8_t* data = nullptr;
    std::size_t size = 0;
    std::uint32_t width = 0;
    std::uint32_t height = 0;
    OrvPixelFormatType format = OrvPixelFormatMono8;
};

/// Name of a pixel format, its code in hexadecimal where it is not one that can be shown.
QString pixelFormatName(OrvPixelFormatType format);
bool canShow(OrvPixelFormatType format);

/// A copy of the pixels that a screen can show: 8 bits of grey or of each colour. Null when the
/// pixel format cannot be shown, or when there are fewer pixels than width and height promise.
/// Thread-safe.
QImage toImage(const RawImage& raw);

/// Describes the pixels of a frame, which keeps owning them.
RawImage rawImage(const OrvCPP::Frame& frame);

} // namespace viewer
