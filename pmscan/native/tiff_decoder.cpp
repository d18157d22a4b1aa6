#include <tiffio.h>

#include <algorithm>
#include <array>
#include <vector>

#include "pmscan/native/picture_decoders.h"
#include "pmscan/native/tiff_file.h"

namespace pmscan {
namespace {

// Red, green, blue and opacity, whose colours are those of what shines through it.
bool IsTransparentColour(const TiffLayout& layout) {
  return layout.photometric == PHOTOMETRIC_RGB && layout.samples == 4 && !layout.isPremultiplied &&
         (layout.bits == 8 || layout.bits == 16);
}

bool IsDeep(const TiffLayout& layout) {
  const bool isGrey = layout.photometric == PHOTOMETRIC_MINISBLACK && layout.samples == 1;
  const bool isColour = layout.photometric == PHOTOMETRIC_RGB && layout.samples == 3;
  return layout.bits == 16 && (isGrey || isColour);
}

// Samples of 16 bits, of which one is for all three channels where the picture is grey.
void AddDeep(TiffFile& tiff, simulator::Picture& picture) {
  const std::size_t samples = tiff.Layout().samples;
  std::vector<std::uint16_t> line(std::size_t{picture.width} * samples);
  for (std::uint32_t row = 0; row < picture.height; ++row) {
    tiff.ReadLine(row, line.data());
    for (const std::uint16_t sample : line) {
      picture.samples.insert(picture.samples.end(), samples == 1 ? 3 : 1, sample);
    }
  }
}

// Of deep samples the high byte counts.
void AddTransparent(TiffFile& tiff, simulator::Picture& picture) {
  constexpr std::array<std::size_t, 4> kOrder{2, 1, 0, 3};
  const std::size_t bytes = tiff.Layout().bits / 8;
  std::vector<std::uint8_t> line(std::size_t{picture.width} * 4 * bytes);
  std::vector<std::uint8_t> pixels(std::size_t{picture.width} * 4);
  for (std::uint32_t row = 0; row < picture.height; ++row) {
    tiff.ReadLine(row, line.data());
    for (std::size_t i = 0; i < pixels.size(); ++i) {
      pixels[i] = line[(i / 4 * 4 + kOrder[i % 4] + 1) * bytes - 1];
    }
    AddPixels(pixels, picture);
  }
}

// The library mixes the colours with black where they are transparent.
void AddAnything(TiffFile& tiff, simulator::Picture& picture) {
  constexpr std::uint32_t kFull = 255;
  constexpr std::uint32_t kFullRange = 257;
  const std::vector<std::uint32_t> pixels = tiff.ReadColours(picture.width, picture.height);
  picture.samples.reserve(pixels.size() * 3);
  for (const std::uint32_t pixel : pixels) {
    const std::uint32_t white = kFull - TIFFGetA(pixel);
    for (const std::uint32_t light : {TIFFGetR(pixel), TIFFGetG(pixel), TIFFGetB(pixel)}) {
      picture.samples.push_back(
          static_cast<std::uint16_t>(std::min(light + white, kFull) * kFullRange));
    }
  }
}

}  // namespace

simulator::Picture DecodeTiff(const PictureSource& source) {
  TiffFile tiff(source);
  const TiffLayout& layout = tiff.Layout();
  simulator::Picture picture =
      BeginPicture(layout.width, layout.height, layout.dotsPerInch, source);
  if (layout.isByLines && IsDeep(layout)) {
    AddDeep(tiff, picture);
  } else if (layout.isByLines && IsTransparentColour(layout)) {
    AddTransparent(tiff, picture);
  } else {
    AddAnything(tiff, picture);
  }
  return picture;
}

}  // namespace pmscan
