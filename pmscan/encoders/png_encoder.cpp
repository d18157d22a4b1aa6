#include "pmscan/encoders/png_encoder.h"

#include <array>
#include <cmath>
#include <utility>

#include "pmscan/encoders/byte_order.h"
#include "pmscan/encoders/pixel_order.h"

namespace pmscan {
namespace {

using Bytes = std::vector<std::uint8_t>;

constexpr std::string_view kSignature("\x89PNG\r\n\x1A\n", 8);
constexpr std::size_t kFullChunk = 65536;

constexpr std::uint8_t kGrey = 0;
constexpr std::uint8_t kRgb = 2;
constexpr std::uint8_t kIndexed = 3;

std::uint8_t ColourType(PixelLayout layout) {
  if (layout == PixelLayout::kPalette) return kIndexed;
  return SamplesPerPixel(layout) == 3 ? kRgb : kGrey;
}

Bytes Chunk(std::string_view name, const Bytes& data) {
  Bytes chunk;
  AppendBig(chunk, static_cast<std::uint32_t>(data.size()), 4);
  for (const char letter : name) chunk.push_back(static_cast<std::uint8_t>(letter));
  chunk.insert(chunk.end(), data.begin(), data.end());
  const uLong sum = crc32(0, chunk.data() + 4, static_cast<uInt>(chunk.size() - 4));
  AppendBig(chunk, static_cast<std::uint32_t>(sum), 4);
  return chunk;
}

Bytes Header(PixelLayout layout, std::uint32_t width, std::uint32_t height) {
  Bytes header;
  AppendBig(header, width, 4);
  AppendBig(header, height, 4);
  header.push_back(static_cast<std::uint8_t>(BitsPerSample(layout)));
  header.push_back(ColourType(layout));
  header.insert(header.end(), 3, 0);  // the only compression and filters; not interlaced
  return Chunk("IHDR", header);
}

// In dots per metre.
Bytes Resolution(std::uint32_t dotsPerInch) {
  constexpr double kInchesPerMetre = 1 / 0.0254;
  const auto dots = static_cast<std::uint32_t>(std::lround(dotsPerInch * kInchesPerMetre));
  Bytes resolution;
  AppendBig(resolution, dots, 4);
  AppendBig(resolution, dots, 4);
  resolution.push_back(1);
  return Chunk("pHYs", resolution);
}

}  // namespace

PngEncoder::PngEncoder(ByteFile& file, PageForm form) : file_(file), form_(std::move(form)) {}

void PngEncoder::BeginPage(std::uint32_t width, std::uint32_t height) {
  width_ = width;
  deflater_.emplace(form_.layout, LineBytes(form_.layout, width));
  file_.Append(kSignature);
  file_.Append(Header(form_.layout, width, height));
  file_.Append(Resolution(form_.dotsPerInch));
  AppendOrigin();
  if (form_.layout == PixelLayout::kPalette) AppendPalette();
}

void PngEncoder::AppendText(std::string_view keyword, const std::string& text) {
  Bytes data(keyword.begin(), keyword.end());
  data.push_back(0);
  data.insert(data.end(), text.begin(), text.end());
  file_.Append(Chunk("tEXt", data));
}

void PngEncoder::AppendOrigin() {
  if (form_.origin.software.empty()) return;
  std::array<char, 20> date{};
  std::strftime(date.data(), date.size(), "%Y-%m-%dT%H:%M:%S", &form_.origin.date);
  AppendText("Source", form_.origin.scanner);
  AppendText("Software", form_.origin.software);
  AppendText("Creation Time", date.data());
}

void PngEncoder::AppendPalette() {
  Bytes colours;
  for (std::size_t i = 0; i < kPaletteColours; ++i) {
    const auto colour = PaletteColour(i);
    colours.insert(colours.end(), colour.begin(), colour.end());
  }
  file_.Append(Chunk("PLTE", colours));
}

void PngEncoder::WriteLine(std::span<const std::uint8_t> line) {
  deflater_->WriteLine(line);
  const Bytes compressed = deflater_->Take();
  data_.insert(data_.end(), compressed.begin(), compressed.end());
  if (data_.size() >= kFullChunk) AppendData();
}

void PngEncoder::AppendData() {
  if (!data_.empty()) file_.Append(Chunk("IDAT", data_));
  data_.clear();
}

void PngEncoder::EndPage(std::uint32_t lines) {
  if (lines == 0) return;
  deflater_->End();
  const Bytes compressed = deflater_->Take();
  data_.insert(data_.end(), compressed.begin(), compressed.end());
  AppendData();
  file_.Append(Chunk("IEND", {}));
  file_.WriteAt(kSignature.size(), Header(form_.layout, width_, lines));
}

}  // namespace pmscan
