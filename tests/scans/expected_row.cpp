#include "tests/scans/expected_row.h"

namespace pmddb832::tests {
namespace {

using Row = std::vector<std::uint8_t>;

// Samples of a line, the channels in the order of the row.
struct RowSource {
  const simulator::Picture& picture;
  bool converts;
  std::uint32_t y;
  std::uint16_t Channel(std::uint32_t x, std::uint32_t channel) const {
    return Sample(picture, x, y, channel);
  }
  std::uint16_t At(std::uint32_t x, std::uint32_t place) const {
    return Channel(x, converts ? 2 - place : place);
  }
};

void AppendSample(Row& row, std::uint16_t sample) {
  row.push_back(static_cast<std::uint8_t>(sample & 0xFF));
  row.push_back(static_cast<std::uint8_t>(sample >> 8));
}

Row LineArtRow(const RowSource& source, std::uint32_t x, std::uint32_t width) {
  Row row((width + 7) / 8, 0);
  for (std::uint32_t i = 0; i < width; ++i) {
    if (source.At(x + i, 0) == 0xFFFF) row[i / 8] |= static_cast<std::uint8_t>(0x80 >> i % 8);
  }
  return row;
}

// Place of a sample in a cube of 6 x 6 x 6 colours.
std::uint8_t CubeStep(std::uint16_t sample) {
  constexpr std::uint8_t kSteps[]{0, 1, 1, 2, 3, 4, 4, 5};
  return kSteps[sample >> 13];
}

// Red weighs most for a host that converts, blue for another one.
std::uint8_t PaletteIndex(const RowSource& source, std::uint32_t x) {
  return static_cast<std::uint8_t>(CubeStep(source.At(x, 2)) * 36 + CubeStep(source.At(x, 1)) * 6 +
                                   CubeStep(source.At(x, 0)));
}

void AppendPixel(Row& row, const RowSource& source, std::uint32_t pixelType, std::uint32_t x) {
  constexpr std::uint16_t kTwelveBits = 0xFFF0;
  switch (pixelType) {
    case 2:
      row.push_back(static_cast<std::uint8_t>(source.At(x, 0) >> 8));
      return;
    case 4:
      row.push_back(PaletteIndex(source, x));
      return;
    case 5:
      for (std::uint32_t i : {0u, 1u, 2u}) {
        row.push_back(static_cast<std::uint8_t>(source.At(x, i) >> 8));
      }
      return;
    case 6:  // blue in the low nibble of the first byte, green and red in the second
      row.push_back(static_cast<std::uint8_t>(source.Channel(x, 2) >> 12));
      row.push_back(static_cast<std::uint8_t>((source.Channel(x, 1) >> 12 << 4) |
                                              source.Channel(x, 0) >> 12));
      return;
    case 7:
      for (std::uint32_t i : {0u, 1u, 2u}) AppendSample(row, source.At(x, i) & kTwelveBits);
      return;
    default:
      AppendSample(row, source.At(x, 0) & kTwelveBits);
  }
}

}  // namespace

std::vector<std::uint8_t> ExpectedRow(const simulator::Picture& picture, std::uint32_t pixelType,
                                      bool converts, std::uint32_t x, std::uint32_t y,
                                      std::uint32_t width) {
  const RowSource source{picture, converts, y};
  if (pixelType == 0) return LineArtRow(source, x, width);
  Row row;
  for (std::uint32_t i = 0; i < width; ++i) AppendPixel(row, source, pixelType, x + i);
  return row;
}

}  // namespace pmddb832::tests
