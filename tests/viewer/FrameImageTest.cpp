// SPDX-License-Identifier: BSD-3-Clause
#include "viewer/FrameImage.h"

#include <QColor>
#include <QStringList>
#include <gtest/gtest.h>

#include <vector>

using viewer::RawImage;
using viewer::toImage;

namespace {

struct Case {
    const char* name;
    OrvPixelFormatType format;
    std::uint32_t width;
    std::uint32_t height;
    /// In hexadecimal digits, as are the pixels (red, green, blue), row by row.
    const char* bytes;
    const char* pixels;
};

std::string pixelsOf(const QImage& image) {
    QStringList pixels;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x)
            pixels << image.pixelColor(x, y).name().mid(1);
    }
    return pixels.join(QLatin1Char(' ')).toStdString();
}

const Case formats[] = {
    // Three pixels a row: QImage pads its rows to four bytes, the camera does not.
    {"Mono8", OrvPixelFormatMono8, 3, 2, "000102 7f80ff",
     "000000 010101 020202 7f7f7f 808080 ffffff"},
    {"Mono10", OrvPixelFormatMono10, 2, 2, "ff03 0400 0300 0002", "ffffff 010101 000000 808080"},
    {"Mono12", OrvPixelFormatMono12, 2, 1, "ff0f 1008", "ffffff 818181"},
    {"Mono12WithStrayHighBits", OrvPixelFormatMono12, 1, 1, "00f0", "ffffff"},
    {"Mono16", OrvPixelFormatMono16, 2, 1, "ff12 00ff", "121212 ffffff"},
    // 0xABC and 0x123, then 0xFED: the second row begins in the middle of a byte.
    {"Mono12p", OrvPixelFormatMono12p, 3, 1, "bc3a12 ed0f", "ababab 121212 fefefe"},
    {"Mono12pOddRows", OrvPixelFormatMono12p, 1, 2, "bc3a12", "ababab 121212"},
    {"RGB8", OrvPixelFormatRGB8, 1, 2, "010203 fdfeff", "010203 fdfeff"},
    // 200, 10, 30 and 50.
    {"BayerRG8", OrvPixelFormatBayerRG8, 2, 2, "c80a 1e32", "c81432 c81432 c81432 c81432"},
    {"BayerRG8OddSides", OrvPixelFormatBayerRG8, 1, 1, "5a", "5a5a5a"},
};

TEST(FrameImage, becomesPixelsForAScreenUnlessAByteIsMissing) {
    for (const Case& format : formats) {
        SCOPED_TRACE(format.name);
        const QByteArray bytes = QByteArray::fromHex(format.bytes);
        RawImage raw{reinterpret_cast<const std::uint8_t*>(bytes.constData()),
                     static_cast<std::size_t>(bytes.size()), format.width, format.height,
                     format.format};
        const QImage image = toImage(raw);
        EXPECT_EQ(image.size(), QSize(int(format.width), int(format.height)));
        EXPECT_EQ(pixelsOf(image), format.pixels);
        --raw.size;
        EXPECT_TRUE(toImage(raw).isNull());
    }
}

TEST(FrameImage, isNotMadeOfAnUnknownFormatOrWithoutPixels) {
    const auto unknown = static_cast<OrvPixelFormatType>(0x0210001F);
    EXPECT_EQ(viewer::pixelFormatName(unknown), QStringLiteral("0x0210001f"));
    EXPECT_EQ(viewer::pixelFormatName(OrvPixelFormatMono12p), QStringLiteral("Mono12p"));
    const std::vector<std::uint8_t> bytes(64);
    EXPECT_TRUE(toImage({}).isNull());
    EXPECT_TRUE(toImage({bytes.data(), bytes.size(), 4, 4, unknown}).isNull());
    EXPECT_TRUE(toImage({bytes.data(), bytes.size(), 0, 4, OrvPixelFormatMono8}).isNull());
    // So large that the number of bytes would overflow in 32 bits.
    EXPECT_TRUE(toImage({bytes.data(), bytes.size(), 65536, 65536, OrvPixelFormatMono8}).isNull());
}

} // namespace
