#include "pmscan/report_page/raw_pixels.h"

#include <algorithm>
#include <cstddef>
#include <utility>

namespace pmscan {
namespace {

using Bytes = std::span<const std::uint8_t>;

// Colour modes as they stand on the wire.
constexpr std::uint8_t kPlainPlanes = 0x01;
constexpr std::uint8_t kPlanes = 0x02;
constexpr std::uint8_t kColour = 0x13;
constexpr std::uint8_t kBlueFirst = 0x23;

constexpr std::uint8_t kWhite = 0xFF;

// White behind the end.
std::uint8_t ByteAt(Bytes line, std::size_t place) {
  return place < line.size() ? line[place] : kWhite;
}

std::uint8_t BitAt(Bytes line, std::size_t x) {
  return (ByteAt(line, x / 8) >> (7 - x % 8) & 1u) != 0 ? kWhite : std::uint8_t{0};
}

// The first of two pixels stands in the high half.
unsigned HalfAt(Bytes line, std::size_t place, std::size_t x) {
  const unsigned byte = ByteAt(line, place);
  return x % 2 == 0 ? byte >> 4u : byte & 0x0Fu;
}

RgbPixel Grey(std::uint8_t sample) {
  return {sample, sample, sample};
}

RgbPixel ReadBits(const PictureShape&, Bytes line, std::uint32_t x) {
  return Grey(BitAt(line, x));
}

RgbPixel ReadHalves(const PictureShape&, Bytes line, std::uint32_t x) {
  return Grey(static_cast<std::uint8_t>(HalfAt(line, x / 2, x) * 17));
}

RgbPixel ReadGrey(const PictureShape&, Bytes line, std::uint32_t x) {
  return Grey(ByteAt(line, x));
}

// The high byte is the second one.
RgbPixel ReadDeepGrey(const PictureShape&, Bytes line, std::uint32_t x) {
  return Grey(ByteAt(line, std::size_t{2} * x + 1));
}

RgbPixel InOrder(const PictureShape& shape, RgbPixel pixel) {
  if (shape.colorMode == kBlueFirst) std::swap(pixel[0], pixel[2]);
  return pixel;
}

RgbPixel ReadColour(const PictureShape& shape, Bytes line, std::uint32_t x) {
  const std::size_t place = std::size_t{3} * x;
  return InOrder(shape, {ByteAt(line, place), ByteAt(line, place + 1), ByteAt(line, place + 2)});
}

RgbPixel ReadDeepColour(const PictureShape& shape, Bytes line, std::uint32_t x) {
  const std::size_t place = std::size_t{6} * x;
  return InOrder(shape,
                 {ByteAt(line, place + 1), ByteAt(line, place + 3), ByteAt(line, place + 5)});
}

// Two pixels in three bytes, one channel a byte.
RgbPixel ReadPackedColour(const PictureShape& shape, Bytes line, std::uint32_t x) {
  RgbPixel pixel{};
  for (std::size_t channel = 0; channel < 3; ++channel) {
    const std::size_t place = std::size_t{3} * (x / 2) + channel;
    pixel[channel] = static_cast<std::uint8_t>(HalfAt(line, place, x) * 17);
  }
  return InOrder(shape, pixel);
}

// A third of the line for each channel; of each half byte the three upper bits.
RgbPixel ReadPlanes(const PictureShape& shape, Bytes line, std::uint32_t x) {
  const std::size_t planeBytes = (std::size_t{shape.width} + 1) / 2;
  RgbPixel pixel{};
  for (std::size_t channel = 0; channel < 3; ++channel) {
    const unsigned sample = HalfAt(line, channel * planeBytes + x / 2, x) >> 1u;
    pixel[channel] = static_cast<std::uint8_t>(sample * kWhite / 7);
  }
  return pixel;
}

RgbPixel ReadBitPlanes(const PictureShape& shape, Bytes line, std::uint32_t x) {
  const std::size_t planeBytes = (std::size_t{shape.width} + 7) / 8;
  RgbPixel pixel{};
  for (std::size_t channel = 0; channel < 3; ++channel) {
    pixel[channel] = BitAt(line.subspan(std::min(line.size(), channel * planeBytes)), x);
  }
  return pixel;
}

}  // namespace

bool IsGrey(const PictureShape& shape) {
  return shape.colorMode != kColour && shape.colorMode != kBlueFirst &&
         shape.colorMode != kPlanes && shape.colorMode != kPlainPlanes;
}

RawPixels::RawPixels(const PictureShape& pictureShape, std::uint64_t lineBytes)
    : shape_(pictureShape), reader_(ReaderOf(pictureShape, lineBytes)) {}

RawPixels::Reader RawPixels::ReaderOf(const PictureShape& shape, std::uint64_t lineBytes) {
  const std::uint64_t width = shape.width;
  // Scanners are told of more bits than 8 also where the host is content with as many.
  const bool isDeep = shape.bits > 8;
  if (IsGrey(shape)) {
    if (shape.bits == 1) return ReadBits;
    if (shape.bits <= 4) return lineBytes * 2 >= width * 3 ? ReadPackedColour : ReadHalves;
    return isDeep && lineBytes >= width * 2 ? ReadDeepGrey : ReadGrey;
  }
  if (shape.colorMode == kPlanes || shape.colorMode == kPlainPlanes) {
    return shape.bits == 1 ? ReadBitPlanes : ReadPlanes;
  }
  if (shape.bits <= 4) return ReadPackedColour;
  return isDeep && lineBytes >= width * 6 ? ReadDeepColour : ReadColour;
}

RgbPixel RawPixels::At(Bytes line, std::uint32_t x) const {
  return reader_(shape_, line, x);
}

}  // namespace pmscan
