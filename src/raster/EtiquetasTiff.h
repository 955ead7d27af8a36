#pragma once
// Internal. The numbers of TIFF 6.0, BigTIFF and GeoTIFF 1.0 that the reader and the writer of pages share.

#include <cstdint>

namespace Vertiz {

/// Tags of a directory, by the names that the standard gives them.
namespace etiqueta {
constexpr std::uint32_t kImageWidth = 256, kImageLength = 257, kBitsPerSample = 258, kCompression = 259,
                        kPhotometric = 262, kFillOrder = 266, kStripOffsets = 273, kSamplesPerPixel = 277,
                        kRowsPerStrip = 278, kStripByteCounts = 279, kMaxSampleValue = 281, kXResolution = 282,
                        kYResolution = 283, kPlanarConfiguration = 284, kResolutionUnit = 296, kSoftware = 305,
                        kWhitePoint = 318, kColorMap = 320, kTileWidth = 322, kTileLength = 323, kTileOffsets = 324,
                        kTileByteCounts = 325, kExtraSamples = 338, kSampleFormat = 339, kYCbCrCoefficients = 529,
                        kYCbCrSubSampling = 530, kReferenceBlackWhite = 532;
// GeoTIFF's.
constexpr std::uint32_t kModelPixelScale = 33550, kModelTiepoint = 33922, kModelTransformation = 34264,
                        kGeoKeyDirectory = 34735, kGeoDoubleParams = 34736, kGeoAsciiParams = 34737;
}  // namespace etiqueta

/// Types of the values of a tag.
namespace tipo {
constexpr unsigned kByte = 1, kAscii = 2, kShort = 3, kLong = 4, kRational = 5, kFloat = 11, kDouble = 12, kIfd = 13,
                   kLong8 = 16, kIfd8 = 18;
}  // namespace tipo

/// What the samples of a pixel stand for (PhotometricInterpretation).
namespace fotometrica {
constexpr unsigned kCeroBlanco = 0, kCeroNegro = 1, kRGB = 2, kPaleta = 3, kCMYK = 5, kYCbCr = 6, kCIELab = 8;
}  // namespace fotometrica

/// Keys of the GeoKey directory.
namespace clave {
constexpr std::uint16_t kModelType = 1024, kRasterType = 1025, kGeographicType = 2048, kAngularUnits = 2054;
}  // namespace clave

}  // namespace Vertiz
