#pragma once
// Internal. Conversions of colour that the operations on pictures share.

#include "platform/Tipos.h"

namespace Vertiz {

/// Hue in degrees from 0 to below 360 (0 for a grey), saturation and value from 0 to 1.
struct HSV {
    double h, s, v;
};

/// Of channels from 0 to 255.
HSV RGBaHSV(int r, int g, int b);
/// Writes the three channels, 0 to 255.
void HSVaRGB(const HSV& hsv, int& r, int& g, int& b);

/// Luma and colour differences of ITU-R BT.601, in its ranges for bytes (16 to 235, 16 to 240).
struct YCbCr {
    double y, cb, cr;
};

YCbCr RGBaYCbCr(int r, int g, int b);
/// Rounds, and clamps to 0..255.
void YCbCraRGB(const YCbCr& c, int& r, int& g, int& b);

}  // namespace Vertiz
