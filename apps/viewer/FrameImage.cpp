// SPDX-License-Identifier: BSD-3-Clause
#include "viewer/FrameImage.h"

#include "OrvCPP/Frame.h"

#include <algorithm>
#include <array>
#include <cstring>

namespace viewer {

namespace {

using RowReader = void (*)(const RawImage& raw, int row, std::uint8_t* target);

/// Bits per pixel of a PFNC code: its third byte.
constexpr std::size_t bitsPerPixel(OrvPixelFormatType format) {
    return (static_cast<std::uint32_t>(format) >> 16U) & 0xFFU;
}

const std::uint8_t* rowStart(const RawImage& raw, int row) {
    return raw.data + static_cast<std::size_t>(row) * raw.width * bitsPerPixel(raw.format) / 8;
}

void copyRow(const RawImage& raw, int row, std::uint8_t* target) {
    std::memcpy(target, rowStart(raw, row), raw.width * bitsPerPixel(raw.format) / 8);
}

/// Little-endian pixels of two bytes, of which BITS are used.
template <unsigned BITS> void wideGreyRow(const RawImage& raw, int row, std::uint8_t* target) {
    const std::uint8_t* source = rowStart(raw, row);
    for (std::uint32_t x = 0; x < raw.width; ++x, source += 2) {
        const unsigned value = source[0] | static_cast<unsigned>(source[1]) << 8U;
        target[x] = static_cast<std::uint8_t>(std::min(value >> (BITS - 8U), 255U));
    }
}

/// Two pixels in three bytes, without padding at the ends of rows.
void packedGreyRow(const RawImage& raw, int row, std::uint8_t* target) {
    const std::size_t first = static_cast<std::size_t>(row) * raw.width;
    for (std::size_t pixel = first; pixel < first + raw.width; ++pixel) {
        const std::uint8_t* bytes = raw.data + pixel / 2 * 3;
        const bool isSecond = pixel % 2 == 1;
        *target++ =
            isSecond ? bytes[2] : static_cast<std::uint8_t>((bytes[0] >> 4U) | (bytes[1] << 4U));
    }
}

/// Every pixel takes the colour of its block of two by two: red and green above green and blue.
void bayerRow(const RawImage& raw, int row, std::uint8_t* target) {
    const int lastRow = static_cast<int>(raw.height) - 1;
    const std::uint8_t* upper = rowStart(raw, std::min(row & ~1, lastRow));
    const std::uint8_t* lower = rowStart(raw, std::min(row | 1, lastRow));
    for (std::uint32_t x = 0; x < raw.width; ++x) {
        const std::uint32_t left = x & ~1U;
        const std::uint32_t right = std::min(x | 1U, raw.width - 1);
        *target++ = upper[left];
        *target++ = static_cast<std::uint8_t>((upper[right] + lower[left]) / 2);
        *target++ = lower[right];
    }
}

struct Conversion {
    OrvPixelFormatType format;
    const char* name;
    QImage::Format imageFormat;
    RowReader readRow;
};

constexpr std::array conversions{
    Conversion{OrvPixelFormatMono8, "Mono8", QImage::Format_Grayscale8, copyRow},
    Conversion{OrvPixelFormatMono10, "Mono10", QImage::Format_Grayscale8, wideGreyRow<10>},
    Conversion{OrvPixelFormatMono12, "Mono12", QImage::Format_Grayscale8, wideGreyRow<12>},
    Conversion{OrvPixelFormatMono12p, "Mono12p", QImage::Format_Grayscale8, packedGreyRow},
    Conversion{OrvPixelFormatMono16, "Mono16", QImage::Format_Grayscale8, wideGreyRow<16>},
    Conversion{OrvPixelFormatBayerRG8, "BayerRG8", QImage::Format_RGB888, bayerRow},
    Conversion{OrvPixelFormatRGB8, "RGB8", QImage::Format_RGB888, copyRow},
};

const Conversion* findConversion(OrvPixelFormatType format) {
    for (const Conversion& each : conversions)
        if (each.format == format)
            return &each;
    return nullptr;
}

bool isComplete(const RawImage& raw) {
    constexpr std::uint32_t largestSide = 65535;
    if (raw.data == nullptr || raw.width == 0 || raw.height == 0 || raw.width > largestSide ||
        raw.height > largestSide) {
        return false;
    }
    const std::size_t pixels = static_cast<std::size_t>(raw.width) * raw.height;
    return raw.size >= (pixels * bitsPerPixel(raw.format) + 7) / 8;
}

} // namespace

QString pixelFormatName(OrvPixelFormatType format) {
    const Conversion* conversion = findConversion(format);
    return conversion != nullptr ? QString::fromLatin1(conversion->name)
                                 : QStringLiteral("0x%1").arg(static_cast<std::uint32_t>(format), 8,
                                                              16, QLatin1Char('0'));
}

bool canShow(OrvPixelFormatType format) {
    return findConversion(format) != nullptr;
}

QImage toImage(const RawImage& raw) {
    const Conversion* conversion = findConversion(raw.format);
    if (conversion == nullptr || !isComplete(raw))
        return {};
    QImage image(static_cast<int>(raw.width), static_cast<int>(raw.height),
                 conversion->imageFormat);
    for (int row = 0; row < image.height(); ++row)
        conversion->readRow(raw, row, image.scanLine(row));
    return image;
}

RawImage rawImage(const OrvCPP::Frame& frame) {
    RawImage raw;
    std::uint32_t size = 0;
    const bool isKnown = frame.GetImage(raw.data) == OrvErrorSuccess &&
                         frame.GetBufferSize(size) == OrvErrorSuccess &&
                         frame.GetWidth(raw.width) == OrvErrorSuccess &&
                         frame.GetHeight(raw.height) == OrvErrorSuccess &&
                         frame.GetPixelFormat(raw.format) == OrvErrorSuccess;
    raw.size = size;
    return isKnown ? raw : RawImage{};
}

} // namespace viewer
