// SPDX-License-Identifier: BSD-3-Clause
#include "viewer/FrameImage.h"

#include <gmock/gmock.h>

#include <vector>

using testing::ElementsAreArray;
using testing::Values;
using viewer::RawImage;
using viewer::toImage;

namespace {

struct Case {
    const char* name;
    OrvPixelFormatType format;
    std::uint32_t width;
    std::uint32_t height;
    std::vector<std::uint8_t> bytes;
    /// Row by row; grey as 0xffyyyyyy.
    std::vector<QRgb> pixels;
};

QRgb grey(int value) {
    return qRgb(value, value, value);
}

RawImage rawOf(const Case& data) {
    return {data.bytes.data(), data.bytes.size(), data.width, data.height, data.format};
}

std::vector<QRgb> pixelsOf(const QImage& image) {
    std::vector<QRgb> pixels;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            pixels.push_back(image.pixel(x, y));
        }
    }
    return pixels;
}

class FrameImage : public testing::TestWithParam<Case> {};

TEST_P(FrameImage, becomesPixelsForAScreen) {
    const QImage image = toImage(rawOf(GetParam()));
    EXPECT_EQ(image.size(), QSize(int(GetParam().width), int(GetParam().height)));
    EXPECT_THAT(pixelsOf(image), ElementsAreArray(GetParam().pixels));
}

TEST_P(FrameImage, withAByteMissingIsNotShown) {
    RawImage raw = rawOf(GetParam());
    --raw.size;
    EXPECT_TRUE(toImage(raw).isNull());
}

// Three pixels a row: QImage pads its rows to four bytes, the camera does not.
INSTANTIATE_TEST_SUITE_P(
    Formats, FrameImage,
    Values(
        Case{"Mono8",
             OrvPixelFormatMono8,
             3,
             2,
             {0, 1, 2, 127, 128, 255},
             {grey(0), grey(1), grey(2), grey(127), grey(128), grey(255)}},
        Case{"Mono10",
             OrvPixelFormatMono10,
             2,
             2,
             {0xff, 0x03, 0x04, 0x00, 0x03, 0x00, 0x00, 0x02},
             {grey(255), grey(1), grey(0), grey(128)}},
        Case{
            "Mono12", OrvPixelFormatMono12, 2, 1, {0xff, 0x0f, 0x10, 0x08}, {grey(255), grey(129)}},
        Case{"Mono12WithStrayHighBits", OrvPixelFormatMono12, 1, 1, {0x00, 0xf0}, {grey(255)}},
        Case{"Mono16",
             OrvPixelFormatMono16,
             2,
             1,
             {0xff, 0x12, 0x00, 0xff},
             {grey(0x12), grey(255)}},
        // 0xABC and 0x123, then 0xFED: the second row begins in the middle of a byte.
        Case{"Mono12p",
             OrvPixelFormatMono12p,
             3,
             1,
             {0xbc, 0x3a, 0x12, 0xed, 0x0f},
             {grey(0xab), grey(0x12), grey(0xfe)}},
        Case{"Mono12pOddRows",
             OrvPixelFormatMono12p,
             1,
             2,
             {0xbc, 0x3a, 0x12},
             {grey(0xab), grey(0x12)}},
        Case{"RGB8",
             OrvPixelFormatRGB8,
             1,
             2,
             {1, 2, 3, 253, 254, 255},
             {qRgb(1, 2, 3), qRgb(253, 254, 255)}},
        Case{"BayerRG8",
             OrvPixelFormatBayerRG8,
             2,
             2,
             {200, 10, 30, 50},
             {qRgb(200, 20, 50), qRgb(200, 20, 50), qRgb(200, 20, 50), qRgb(200, 20, 50)}},
        Case{"BayerRG8OddSides", OrvPixelFormatBayerRG8, 1, 1, {90}, {qRgb(90, 90, 90)}}),
    [](const auto& each) { return each.param.name; });

TEST(FrameImageTest, anUnknownFormatIsNamedByItsCodeAndNotShown) {
    const auto format = static_cast<OrvPixelFormatType>(0x0210001F);
    const std::vector<std::uint8_t> bytes(64);
    EXPECT_TRUE(toImage({bytes.data(), bytes.size(), 4, 4, format}).isNull());
    EXPECT_EQ(viewer::pixelFormatName(format), QStringLiteral("0x0210001f"));
    EXPECT_EQ(viewer::pixelFormatName(OrvPixelFormatMono12p), QStringLiteral("Mono12p"));
}

TEST(FrameImageTest, withoutPixelsThereIsNoImage) {
    const std::vector<std::uint8_t> bytes(64);
    EXPECT_TRUE(toImage({}).isNull());
    EXPECT_TRUE(toImage({bytes.data(), bytes.size(), 0, 4, OrvPixelFormatMono8}).isNull());
    // So large that the number of bytes would overflow in 32 bits.
    EXPECT_TRUE(toImage({bytes.data(), bytes.size(), 65536, 65536, OrvPixelFormatMono8}).isNull());
}

} // namespace
