#include "pmscan/encoders/tiff_encoder.h"

#include <algorithm>
#include <limits>
#include <utility>

#include "pmscan/command_line/failure.h"
#include "pmscan/encoders/byte_order.h"
#include "pmscan/encoders/pixel_order.h"
#include "pmscan/encoders/tiff_directory.h"
#include "pmscan/report/error_codes.h"

namespace pmscan {
namespace {

constexpr std::uint64_t kLinkInHeader = 4;
constexpr std::size_t kStripBytes = 65536;  // before they are compressed

constexpr std::uint16_t kGroup4 = 4;
constexpr std::uint16_t kLzw = 5;
constexpr std::uint16_t kWhiteIsZero = 0;
constexpr std::uint16_t kBlackIsZero = 1;
constexpr std::uint16_t kRgb = 2;
constexpr std::uint16_t kPaletteColour = 3;

std::uint16_t Photometric(PixelLayout layout) {
  if (layout == PixelLayout::kBlackWhite) return kWhiteIsZero;
  if (layout == PixelLayout::kPalette) return kPaletteColour;
  return SamplesPerPixel(layout) == 3 ? kRgb : kBlackIsZero;
}

// All reds, then all greens, then all blues, in 16 bits.
std::vector<std::uint16_t> ColourMap() {
  constexpr std::uint16_t kFullRange = 257;
  std::vector<std::uint16_t> map(std::size_t{3} * 256);
  for (std::size_t i = 0; i < kPaletteColours; ++i) {
    for (std::size_t channel = 0; channel < 3; ++channel) {
      map[channel * 256 + i] = static_cast<std::uint16_t>(PaletteColour(i)[channel] * kFullRange);
    }
  }
  return map;
}

// Replaces each sample of `bytes` bytes, the low one first, by what it is more than the one before
// of its channel.
void TakeDifferences(std::vector<std::uint8_t>& line, std::size_t channels, std::size_t bytes) {
  const std::size_t pixelBytes = channels * bytes;
  for (std::size_t i = line.size(); i > pixelBytes; i -= bytes) {
    std::uint8_t* const sample = line.data() + i - bytes;
    const std::uint8_t* const before = sample - pixelBytes;
    const unsigned high = bytes == 2 ? (sample[1] - before[1]) & 0xFFu : 0;
    const bool borrows = bytes == 2 && sample[0] < before[0];
    sample[0] = static_cast<std::uint8_t>(sample[0] - before[0]);
    if (bytes == 2) sample[1] = static_cast<std::uint8_t>(high - (borrows ? 1 : 0));
  }
}

}  // namespace

TiffEncoder::TiffEncoder(ByteFile& file, PageForm form)
    : file_(file), form_(std::move(form)), link_(kLinkInHeader) {
  file_.Append(TiffHeader());
}

bool TiffEncoder::IsDifferenced() const {
  return form_.layout != PixelLayout::kBlackWhite && form_.layout != PixelLayout::kPalette;
}

void TiffEncoder::BeginPage(std::uint32_t width, std::uint32_t height) {
  width_ = width;
  pageStart_ = file_.Size();
  stripPlaces_.clear();
  stripBytes_.clear();
  linesInStrip_ = 0;
  if (form_.layout == PixelLayout::kBlackWhite) fax_.emplace(width);
  stripLines_ = static_cast<std::uint32_t>(
      std::max<std::size_t>(kStripBytes / LineBytes(form_.layout, width), 1));
  if (fax_) stripLines_ = height;
}

void TiffEncoder::WriteLine(std::span<const std::uint8_t> line) {
  ++linesInStrip_;
  if (fax_) return fax_->WriteLine(line);
  RedFirst(form_.layout, line, line_);
  if (IsDifferenced()) {
    TakeDifferences(line_, SamplesPerPixel(form_.layout), BitsPerSample(form_.layout) / 8);
  }
  lzw_.Write(line_);
  if (linesInStrip_ == stripLines_) AppendStrip(lzw_.End());
}

void TiffEncoder::AppendStrip(const std::vector<std::uint8_t>& bytes) {
  if (file_.Size() + bytes.size() > std::numeric_limits<std::uint32_t>::max() - kStripBytes) {
    throw Failure(
        kOutputFile,
        file_.Name() + ": a TIFF file holds 4 GB at most; write a .png file for each page.");
  }
  stripPlaces_.push_back(static_cast<std::uint32_t>(file_.Size()));
  stripBytes_.push_back(static_cast<std::uint32_t>(bytes.size()));
  file_.Append(bytes);
  linesInStrip_ = 0;
}

void TiffEncoder::EndPage(std::uint32_t lines) {
  if (fax_) fax_->End();
  if (linesInStrip_ > 0) AppendStrip(fax_ ? fax_->Take() : lzw_.End());
  if (lines == 0) return file_.CutTo(pageStart_);
  if (file_.Size() % 2 == 1) file_.Append(std::string_view("\0", 1));
  AppendDirectory(lines);
}

void TiffEncoder::AppendDirectory(std::uint32_t lines) {
  TiffDirectory directory;
  const std::uint32_t samples = SamplesPerPixel(form_.layout);
  const auto bits = static_cast<std::uint16_t>(BitsPerSample(form_.layout));
  directory.AddLongs(256, {width_});
  directory.AddLongs(257, {lines});
  directory.AddShorts(258, std::vector(samples, bits));
  directory.AddShorts(259, {fax_ ? kGroup4 : kLzw});
  directory.AddShorts(262, {Photometric(form_.layout)});
  directory.AddScanner(form_.origin);
  directory.AddLongs(273, stripPlaces_);
  directory.AddShorts(277, {static_cast<std::uint16_t>(samples)});
  directory.AddLongs(278, {std::min(stripLines_, lines)});
  directory.AddLongs(279, stripBytes_);
  directory.AddWhole(282, form_.dotsPerInch);
  directory.AddWhole(283, form_.dotsPerInch);
  directory.AddShorts(296, {2});  // dots per inch
  directory.AddSoftwareAndDate(form_.origin);
  if (IsDifferenced()) directory.AddShorts(317, {2});
  if (form_.layout == PixelLayout::kPalette) directory.AddShorts(320, ColourMap());
  const auto place = static_cast<std::uint32_t>(file_.Size());
  std::vector<std::uint8_t> link;
  AppendLittle(link, place, 4);
  file_.Append(directory.Bytes(place));
  file_.WriteAt(link_, link);
  link_ = place + directory.LinkOffset();
}

}  // namespace pmscan
