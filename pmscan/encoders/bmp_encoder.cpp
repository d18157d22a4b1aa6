#include "pmscan/encoders/bmp_encoder.h"

#include <cmath>
#include <utility>

#include "pmscan/command_line/failure.h"
#include "pmscan/encoders/byte_order.h"
#include "pmscan/encoders/pixel_order.h"
#include "pmscan/report/error_codes.h"

namespace pmscan {
namespace {

using Bytes = std::vector<std::uint8_t>;

constexpr std::uint32_t kHeaderBytes = 14;
constexpr std::uint32_t kInfoBytes = 40;
constexpr std::uint64_t kMostBytes = 0xFFFFF000;  // of lines

// Black and white, all greys, or the colours of mode palette; none for colour.
Bytes Palette(PixelLayout layout) {
  const std::uint32_t colours = layout == PixelLayout::kBgr24        ? 0
                                : layout == PixelLayout::kBlackWhite ? 2
                                : layout == PixelLayout::kPalette    ? kPaletteColours
                                                                     : 256;
  Bytes palette;
  for (std::uint32_t i = 0; i < colours; ++i) {
    const auto grey = static_cast<std::uint8_t>(i * 255 / (colours - 1));
    const auto [red, green, blue] =
        layout == PixelLayout::kPalette ? PaletteColour(i) : std::array{grey, grey, grey};
    palette.insert(palette.end(), {blue, green, red, 0});
  }
  return palette;
}

}  // namespace

BmpEncoder::BmpEncoder(ByteFile& file, PageForm form) : file_(file), form_(std::move(form)) {}

std::vector<std::uint8_t> BmpEncoder::Header(std::uint32_t height) const {
  constexpr double kInchesPerMetre = 1 / 0.0254;
  const Bytes palette = Palette(form_.layout);
  const auto colours = static_cast<std::uint32_t>(palette.size() / 4);
  const std::uint32_t start = kHeaderBytes + kInfoBytes + colours * 4;
  const auto dots = static_cast<std::uint32_t>(std::lround(form_.dotsPerInch * kInchesPerMetre));
  Bytes header{'B', 'M'};
  for (const std::uint32_t value : {start + lineBytes_ * height, 0u, start, kInfoBytes, width_,
                                    height, 1u | BitsPerPixel(form_.layout) << 16, 0u,
                                    lineBytes_ * height, dots, dots, colours, colours}) {
    AppendLittle(header, value, 4);
  }
  header.insert(header.end(), palette.begin(), palette.end());
  return header;
}

void BmpEncoder::BeginPage(std::uint32_t width, std::uint32_t height) {
  width_ = width;
  height_ = linesLeft_ = height;
  lineBytes_ = static_cast<std::uint32_t>((LineBytes(form_.layout, width) + 3) / 4 * 4);
  if (std::uint64_t{lineBytes_} * height > kMostBytes) {
    throw Failure(kUnsupported,
                  file_.Name() + ": a BMP file holds 4 GB at most; write a .png file.");
  }
  file_.Append(Header(height));
  start_ = file_.Size();
}

std::uint64_t BmpEncoder::PlaceOf(std::uint32_t lineFromBelow) const {
  return start_ + std::uint64_t{lineFromBelow} * lineBytes_;
}

void BmpEncoder::WriteLine(std::span<const std::uint8_t> line) {
  line_.assign(line.begin(), line.end());
  line_.resize(lineBytes_);
  file_.WriteAt(PlaceOf(--linesLeft_), line_);
}

void BmpEncoder::EndPage(std::uint32_t lines) {
  if (lines < height_) MoveDown(lines);
  file_.CutTo(PlaceOf(lines));
  file_.WriteAt(0, Header(lines));
}

// To the beginning, over the lines that never came.
void BmpEncoder::MoveDown(std::uint32_t lines) {
  for (std::uint32_t line = 0; line < lines; ++line) {
    file_.WriteAt(PlaceOf(line), file_.ReadAt(PlaceOf(height_ - lines + line), lineBytes_));
  }
}

}  // namespace pmscan
