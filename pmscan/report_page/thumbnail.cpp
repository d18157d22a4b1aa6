#include "pmscan/report_page/thumbnail.h"

#include <algorithm>
#include <array>
#include <span>
#include <string_view>

#include "pmscan/encoders/png_encoder.h"
#include "pmscan/report_page/raw_pixels.h"

namespace pmscan {
namespace {

using Bytes = std::span<const std::uint8_t>;

// The widest page whose lines are looked at.
constexpr std::uint32_t kWidest = 1u << 17u;

std::uint32_t DivisorOf(std::uint64_t side, std::uint32_t longest) {
  return static_cast<std::uint32_t>(std::max<std::uint64_t>((side + longest - 1) / longest, 1));
}

// Adds lines up, square by square.
class Shrinker {
 public:
  Shrinker(Thumbnail& thumbnail, std::uint32_t pageWidth)
      : result_(thumbnail), width_(pageWidth), sums_(thumbnail.width) {}

  void Add(const RawPixels& pixels, Bytes line) {
    for (std::uint32_t x = 0; x < width_; ++x) {
      const RgbPixel pixel = pixels.At(line, x);
      Sum& sum = sums_[x / result_.divisor];
      for (std::size_t channel = 0; channel < 3; ++channel) sum[channel] += pixel[channel];
    }
    ++result_.lines;
    if (++pending_ == result_.divisor) Finish();
  }

  // The last squares need not be whole.
  void Finish() {
    if (pending_ == 0) return;
    for (std::uint32_t x = 0; x < result_.width; ++x) {
      const std::uint32_t columns = std::min(result_.divisor, width_ - x * result_.divisor);
      Append(sums_[x], std::uint64_t{columns} * pending_);
    }
    ++result_.height;
    pending_ = 0;
    std::fill(sums_.begin(), sums_.end(), Sum{});
  }

 private:
  using Sum = std::array<std::uint64_t, 3>;

  void Append(const Sum& sum, std::uint64_t pixels) {
    const auto mean = [&](std::size_t channel) {
      return static_cast<std::uint8_t>((sum[channel] + pixels / 2) / pixels);
    };
    if (result_.isGrey) return result_.samples.push_back(mean(0));
    for (const std::size_t channel : {2u, 1u, 0u}) result_.samples.push_back(mean(channel));
  }

  Thumbnail& result_;
  const std::uint32_t width_;
  std::vector<Sum> sums_;
  std::uint32_t pending_ = 0;  // lines in the sums
};

// No form of lines has more pixels in a byte.
constexpr std::uint64_t kMostPixelsInByte = 8;

// How many lines of the block can be shown, at most `most`.
std::uint64_t ShownLines(const CapturedBlock& block, std::uint32_t width, std::uint64_t most) {
  const bool isLongEnough = block.lineBytes * kMostPixelsInByte >= width;
  return block.data.empty() || !isLongEnough ? 0 : std::min<std::uint64_t>(block.lines, most);
}

std::string Base64(Bytes bytes) {
  constexpr std::string_view kDigits =
      "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
  std::string text;
  for (std::size_t i = 0; i < bytes.size(); i += 3) {
    const std::size_t count = std::min<std::size_t>(bytes.size() - i, 3);
    std::uint32_t group = 0;
    for (std::size_t k = 0; k < 3; ++k) group = group << 8u | (k < count ? bytes[i + k] : 0u);
    for (std::size_t k = 0; k < 4; ++k) {
      text += k <= count ? kDigits[group >> (18 - 6 * k) & 63u] : '=';
    }
  }
  return text;
}

}  // namespace

Thumbnail Shrink(const CapturedPage& page, std::uint32_t longest) {
  const std::uint32_t width = page.shape.width;
  Thumbnail thumbnail;
  if (width == 0 || width > kWidest) return thumbnail;
  thumbnail.isGrey = IsGrey(page.shape);
  thumbnail.divisor = DivisorOf(std::max(width, page.shape.height), longest);
  thumbnail.width = (width + thumbnail.divisor - 1) / thumbnail.divisor;
  Shrinker shrinker(thumbnail, width);
  for (const CapturedBlock& block : page.blocks) {
    const std::uint64_t shown = ShownLines(block, width, page.shape.height - thumbnail.lines);
    const RawPixels pixels(page.shape, block.lineBytes);
    for (std::uint64_t line = 0; line < shown; ++line) {
      shrinker.Add(pixels, block.data.subspan(line * block.lineBytes, block.lineBytes));
    }
    if (shown != block.lines || shown == 0) break;
  }
  shrinker.Finish();
  return thumbnail;
}

std::string DataAddress(const Thumbnail& thumbnail) {
  if (thumbnail.samples.empty()) return {};
  const PixelLayout layout = thumbnail.isGrey ? PixelLayout::kGrey8 : PixelLayout::kBgr24;
  ByteFile file;
  PngEncoder encoder(file, {layout, 72, 0, {}});
  encoder.BeginPage(thumbnail.width, thumbnail.height);
  const std::size_t lineBytes = LineBytes(layout, thumbnail.width);
  for (std::uint32_t y = 0; y < thumbnail.height; ++y) {
    encoder.WriteLine(Bytes(thumbnail.samples).subspan(y * lineBytes, lineBytes));
  }
  encoder.EndPage(thumbnail.height);
  const auto size = static_cast<std::size_t>(file.Size());
  return "data:image/png;base64," + Base64(file.ReadAt(0, size));
}

}  // namespace pmscan
