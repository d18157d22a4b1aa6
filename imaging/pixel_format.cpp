#include "imaging/pixel_format.h"

#include <array>

namespace pmddb832 {
namespace {

// bits per sample, colour mode, pixels per unit, bytes per unit; row = pixel type
constexpr std::array<PixelFormat, 9> kFormats{{
    {1, 0x00, 8, 1},
    {4, 0x00, 2, 1},
    {8, 0x00, 1, 1},
    {1, 0x02, 2, 1},
    {3, 0x02, 1, 1},
    {8, 0x13, 1, 3},
    {4, 0x13, 1, 2},
    {16, 0x13, 1, 6},
    {16, 0x00, 1, 2},
}};
constexpr PixelFormat kDeepColourPreview{8, 0x13, 1, 3};
constexpr PixelFormat kDeepGreyPreview{8, 0x00, 1, 1};

}  // namespace

const PixelFormat* FindPixelFormat(std::uint32_t pixelType, bool preview) {
  if (pixelType >= kFormats.size()) return nullptr;
  if (preview && pixelType == kDeepColour) return &kDeepColourPreview;
  if (preview && pixelType == kDeepGrey) return &kDeepGreyPreview;
  return &kFormats[pixelType];
}

}  // namespace pmddb832
