#include <algorithm>
#include <array>
#include <cstdlib>
#include <string>
#include <vector>

#include "pmscan/native/picture_decoders.h"

namespace pmscan {
namespace {

using Bytes = std::span<const std::uint8_t>;

constexpr std::size_t kFileHeader = 14;
constexpr std::uint32_t kOldHeader = 12;
constexpr std::uint32_t kUsualHeader = 40;
constexpr std::uint8_t kOpaque = 255;

std::uint32_t NumberAt(Bytes file, std::size_t place, std::size_t width) {
  if (file.size() < width || place > file.size() - width) throw PictureError(kFileEnds);
  std::uint32_t number = 0;
  for (std::size_t i = width; i-- > 0;) number = number << 8 | file[place + i];
  return number;
}

std::int32_t SignedAt(Bytes file, std::size_t place) {
  return static_cast<std::int32_t>(NumberAt(file, place, 4));
}

// What a BMP file says of its picture.
struct BmpLayout {
  std::uint32_t width = 0;
  std::uint32_t height = 0;
  bool beginsBelow = true;  // the line at the bottom comes first
  std::uint32_t bits = 0;   // of a pixel
  double dotsPerInch = 0;   // 0 when not told
  std::size_t start = 0;    // of the pixels
  Bytes palette{};          // all between the header and the pixels
  std::size_t colourBytes = 4;

  std::size_t LineBytes() const { return (std::size_t{width} * bits + 31) / 32 * 4; }
};

BmpLayout OldLayout(Bytes file) {
  BmpLayout layout{NumberAt(file, 18, 2), NumberAt(file, 20, 2), true, NumberAt(file, 24, 2)};
  layout.colourBytes = 3;
  return layout;
}

BmpLayout UsualLayout(Bytes file) {
  constexpr double kMetersPerInch = 0.0254;
  constexpr std::uint32_t kPlain = 0;
  if (NumberAt(file, 30, 4) != kPlain) {
    throw PictureError("its pixels are compressed or masked; save it uncompressed, or as PNG");
  }
  const std::int64_t width = SignedAt(file, 18);
  const std::int64_t height = SignedAt(file, 22);
  return {static_cast<std::uint32_t>(width < 0 ? 0 : width),
          static_cast<std::uint32_t>(std::abs(height)), height > 0, NumberAt(file, 28, 2),
          SignedAt(file, 38) * kMetersPerInch};
}

BmpLayout LayoutOf(Bytes file) {
  const std::uint32_t header = NumberAt(file, kFileHeader, 4);
  if (header != kOldHeader && header < kUsualHeader) throw PictureError("its header is unknown");
  BmpLayout layout = header == kOldHeader ? OldLayout(file) : UsualLayout(file);
  layout.start = NumberAt(file, 10, 4);
  const std::size_t palette = kFileHeader + header;
  const std::size_t end = std::min(layout.start, file.size());
  if (palette < end) layout.palette = file.subspan(palette, end - palette);
  return layout;
}

// Blue, green and red of an entry; black beyond the end.
std::array<std::uint8_t, 4> ColourOf(const BmpLayout& layout, std::size_t index) {
  const std::size_t place = index * layout.colourBytes;
  if (place + 3 > layout.palette.size()) return {0, 0, 0, kOpaque};
  return {layout.palette[place], layout.palette[place + 1], layout.palette[place + 2], kOpaque};
}

// Five bits for each channel, blue in the lowest.
std::array<std::uint8_t, 4> ColourOf555(std::uint32_t word) {
  std::array<std::uint8_t, 4> pixel{0, 0, 0, kOpaque};
  for (std::size_t channel = 0; channel < 3; ++channel) {
    const std::uint32_t five = word >> (5 * channel) & 31;
    pixel[channel] = static_cast<std::uint8_t>(five << 3 | five >> 2);
  }
  return pixel;
}

std::array<std::uint8_t, 4> PixelAt(const BmpLayout& layout, Bytes line, std::size_t column) {
  const std::size_t bit = column * layout.bits;
  if (layout.bits <= 8) {
    const unsigned shift = 8 - layout.bits - static_cast<unsigned>(bit % 8);
    return ColourOf(layout, line[bit / 8] >> shift & ((1u << layout.bits) - 1));
  }
  if (layout.bits == 16) return ColourOf555(NumberAt(line, bit / 8, 2));
  return {line[bit / 8], line[bit / 8 + 1], line[bit / 8 + 2], kOpaque};
}

void RequireKnown(std::uint32_t bits) {
  for (const std::uint32_t known : {1u, 4u, 8u, 16u, 24u, 32u}) {
    if (bits == known) return;
  }
  throw PictureError("it has " + std::to_string(bits) + " bits for a pixel");
}

}  // namespace

simulator::Picture DecodeBmp(const PictureSource& source) {
  const BmpLayout layout = LayoutOf(source.file);
  RequireKnown(layout.bits);
  simulator::Picture picture =
      BeginPicture(layout.width, layout.height, layout.dotsPerInch, source);
  const std::size_t lineBytes = layout.LineBytes();
  const Bytes lines = source.file.subspan(std::min(layout.start, source.file.size()));
  if (lines.size() / lineBytes < layout.height) throw PictureError(kFileEnds);
  std::vector<std::uint8_t> pixels;
  for (std::uint32_t row = 0; row < layout.height; ++row) {
    const std::size_t stored = layout.beginsBelow ? layout.height - 1 - row : row;
    const Bytes line = lines.subspan(stored * lineBytes, lineBytes);
    pixels.clear();
    for (std::size_t column = 0; column < layout.width; ++column) {
      const auto pixel = PixelAt(layout, line, column);
      pixels.insert(pixels.end(), pixel.begin(), pixel.end());
    }
    AddPixels(pixels, picture);
  }
  return picture;
}

}  // namespace pmscan
