// Conversions of colour: known colours, and the way there and back.

#include "raster/ConversionColor.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>

namespace {

using namespace Vertiz;

TEST(ConversionColor, HsvOfKnownColours) {
    const struct {
        int r, g, b;
        double h, s, v;
    } casos[] = {{0, 0, 0, 0, 0, 0},           {255, 255, 255, 0, 0, 1},
                 {255, 0, 0, 0, 1, 1},         {255, 255, 0, 60, 1, 1},
                 {0, 255, 0, 120, 1, 1},       {0, 255, 255, 180, 1, 1},
                 {0, 0, 255, 240, 1, 1},       {255, 0, 255, 300, 1, 1},
                 {51, 102, 51, 120, 0.5, 0.4}, {102, 51, 77, 329.411764705882, 0.5, 0.4}};
    for (const auto& c : casos) {
        const HSV hsv = RGBaHSV(c.r, c.g, c.b);
        EXPECT_NEAR(hsv.h, c.h, 1e-9) << c.r << ' ' << c.g << ' ' << c.b;
        EXPECT_NEAR(hsv.s, c.s, 1e-12) << c.r << ' ' << c.g << ' ' << c.b;
        EXPECT_NEAR(hsv.v, c.v, 1e-12) << c.r << ' ' << c.g << ' ' << c.b;
    }
}

TEST(ConversionColor, HsvStaysInItsRangesAndComesBack) {
    for (int r = 0; r < 256; r += 3)
        for (int g = 0; g < 256; g += 3)
            for (int b = 0; b < 256; b += 3) {
                const HSV hsv = RGBaHSV(r, g, b);
                ASSERT_TRUE(hsv.h >= 0 && hsv.h < 360 && hsv.s >= 0 && hsv.s <= 1 && hsv.v >= 0 && hsv.v <= 1);
                int r2 = -1, g2 = -1, b2 = -1;
                HSVaRGB(hsv, r2, g2, b2);
                ASSERT_TRUE(r2 == r && g2 == g && b2 == b) << r << ' ' << g << ' ' << b;
            }
}

TEST(ConversionColor, AHueOf360IsRed) {
    int r = -1, g = -1, b = -1;
    HSVaRGB({360, 1, 1}, r, g, b);
    EXPECT_EQ(r, 255);
    EXPECT_EQ(g, 0);
    EXPECT_EQ(b, 0);
}

TEST(ConversionColor, LumaAndDifferencesOfKnownColours) {
    const YCbCr negro = RGBaYCbCr(0, 0, 0), blanco = RGBaYCbCr(255, 255, 255), rojo = RGBaYCbCr(255, 0, 0);
    EXPECT_EQ(negro.y, 16.0);
    EXPECT_EQ(negro.cb, 128.0);
    EXPECT_EQ(negro.cr, 128.0);
    EXPECT_NEAR(blanco.y, 235.0, 0.01);
    EXPECT_NEAR(blanco.cb, 128.0, 0.01);
    EXPECT_NEAR(blanco.cr, 128.0, 0.01);
    EXPECT_EQ(rojo.y, 16 + 65.738 * 255 / 256);
    EXPECT_EQ(rojo.cb, 128 - 37.945 * 255 / 256);
    EXPECT_EQ(rojo.cr, 128 + 112.439 * 255 / 256);
}

TEST(ConversionColor, LumaAndDifferencesComeBack) {
    for (int r = 0; r < 256; r += 3)
        for (int g = 0; g < 256; g += 3)
            for (int b = 0; b < 256; b += 3) {
                int r2 = -1, g2 = -1, b2 = -1;
                YCbCraRGB(RGBaYCbCr(r, g, b), r2, g2, b2);
                ASSERT_TRUE(r2 == r && g2 == g && b2 == b) << r << ' ' << g << ' ' << b;
            }
}

TEST(ConversionColor, ChannelsOutOfReachStopAtTheirEnds) {
    int r = -1, g = -1, b = -1;
    YCbCraRGB({1e12, 128, 128}, r, g, b);
    EXPECT_EQ(r, 255);
    EXPECT_EQ(g, 255);
    EXPECT_EQ(b, 255);
    YCbCraRGB({16, 240, 16}, r, g, b);
    EXPECT_EQ(r, 0);
    EXPECT_EQ(b, 226);
    EXPECT_EQ(g, 47);  // 0.5093696763202726 * 178.755 - 0.19420783645655879 * 225.93
}

}  // namespace
