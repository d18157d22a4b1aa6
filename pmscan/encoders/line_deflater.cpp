#include "pmscan/encoders/line_deflater.h"

#include <array>
#include <cstdlib>
#include <new>

#include "pmscan/encoders/page_encoder.h"
#include "pmscan/encoders/pixel_order.h"

namespace pmscan {
namespace {

constexpr std::uint8_t kUnfiltered = 0;
constexpr std::uint8_t kPaeth = 4;

// That of the three neighbours which is nearest to left + above - corner.
int Nearest(int left, int above, int corner) {
  const int toLeft = std::abs(above - corner);
  const int toAbove = std::abs(left - corner);
  const int toCorner = std::abs(left + above - 2 * corner);
  if (toLeft <= toAbove && toLeft <= toCorner) return left;
  return toAbove <= toCorner ? above : corner;
}

}  // namespace

LineDeflater::LineDeflater(PixelLayout pageLayout, std::size_t lineBytes)
    : layout_(pageLayout), above_(lineBytes) {
  if (deflateInit(&stream_, Z_DEFAULT_COMPRESSION) != Z_OK) throw std::bad_alloc();
}

LineDeflater::~LineDeflater() {
  deflateEnd(&stream_);
}

void LineDeflater::WriteLine(std::span<const std::uint8_t> line) {
  RedAndHighFirst(layout_, line, line_);
  Filter();
  stream_.next_in = filtered_.data();
  stream_.avail_in = static_cast<uInt>(filtered_.size());
  Deflate(Z_NO_FLUSH);
  above_.swap(line_);
}

void LineDeflater::End() {
  Deflate(Z_FINISH);
}

std::vector<std::uint8_t> LineDeflater::Take() {
  std::vector<std::uint8_t> taken;
  taken.swap(compressed_);
  return taken;
}

// Bits and numbers of colours are no amounts, and have no neighbours.
void LineDeflater::Filter() {
  const bool isAmount = layout_ != PixelLayout::kBlackWhite && layout_ != PixelLayout::kPalette;
  filtered_.assign(1, isAmount ? kPaeth : kUnfiltered);
  filtered_.insert(filtered_.end(), line_.begin(), line_.end());
  if (!isAmount) return;
  const std::size_t pixelBytes = BitsPerPixel(layout_) / 8;
  for (std::size_t i = 0; i < line_.size(); ++i) {
    const bool isFirst = i < pixelBytes;
    const int left = isFirst ? 0 : line_[i - pixelBytes];
    const int corner = isFirst ? 0 : above_[i - pixelBytes];
    filtered_[i + 1] = static_cast<std::uint8_t>(line_[i] - Nearest(left, above_[i], corner));
  }
}

void LineDeflater::Deflate(int flush) {
  std::array<std::uint8_t, 16384> room;
  do {
    stream_.next_out = room.data();
    stream_.avail_out = static_cast<uInt>(room.size());
    deflate(&stream_, flush);
    compressed_.insert(compressed_.end(), room.data(),
                       room.data() + (room.size() - stream_.avail_out));
  } while (stream_.avail_out == 0);
}

}  // namespace pmscan
