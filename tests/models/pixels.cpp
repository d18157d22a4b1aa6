#include "tests/models/pixels.h"

#include <algorithm>
#include <array>

namespace pmddb832::models {
namespace {

using Row = std::span<std::uint8_t>;
using Pixel = std::array<std::uint8_t, 6>;  // of which a type uses the first bytes

bool PadsAreWhite(const Record& settings) {
  return settings[kDocFeedOption] == 0 && settings[kMainStatusBit5] != 0 &&
         settings[kWhitePadding] != 0;
}

// Pixels of the raw line that were received whole, when so many share so many bytes.
std::uint32_t Received(const RawLine& line, std::uint32_t pixels, std::uint32_t bytes) {
  return static_cast<std::uint32_t>(line.bytes.size() / bytes) * pixels;
}

// The frame of all types: as many pixels as there are, then the pads, white or the last pixel as
// `makePixel` gave it.
template <class MakePixel>
void Fill(Row row, std::int64_t wanted, std::int64_t pads, std::uint32_t received,
          std::size_t pixelBytes, bool white, MakePixel makePixel) {
  Pixel pixel{};  // free choice: black where no pixel was converted
  std::int64_t room = static_cast<std::int64_t>(row.size() / pixelBytes);
  const auto append = [&] {
    std::copy_n(pixel.begin(), pixelBytes, row.begin());
    row = row.subspan(pixelBytes);
    --room;
  };
  wanted = std::max<std::int64_t>(wanted, 0);
  const std::int64_t converted = std::min<std::int64_t>({wanted, received, room});
  for (std::int64_t i = 0; i < converted; ++i) {
    pixel = makePixel(static_cast<std::size_t>(i));
    append();
  }
  if (white) pixel.fill(0xFF);
  for (; converted == wanted && pads > 0 && room > 0; --pads) append();
  if (converted < wanted || pads > 0) std::ranges::fill(row, std::uint8_t{0xFF});
}

template <class MakePixel>
void FillPixels(const RawLine& line, Row row, std::uint32_t received, std::size_t pixelBytes,
                bool white, MakePixel makePixel) {
  Fill(row, std::int64_t{line.count} - line.pad, line.pad, received, pixelBytes, white, makePixel);
}

// Line art counts bytes; its pads come on top, rounded up to bytes. They repeat the last byte as it
// was read: never inverted.
void FillLineArt(const RawLine& line, Row row, bool inverts, bool white) {
  const std::int64_t pads = line.pad >= 1 ? (line.pad - 1) / 8 + 1 : 0;
  Fill(row, line.count, pads, Received(line, 1, 1), 1, white,
       [&](std::size_t i) { return Pixel{line.bytes[i]}; });
  const std::size_t inverted =
      inverts ? std::min({std::size_t{line.count}, line.bytes.size(), row.size()}) : 0;
  for (std::uint8_t& byte : row.first(inverted)) byte = Low8(~byte);
}

// Pixels that are copied. A mirrored line whose pads lie at its front leaves them out there, in
// bytes, and has none at its end.
void CopyGrey(RawLine line, Row row, std::uint32_t bytes, const Record& settings, bool white) {
  if (line.pad < 0) {
    line.pad = static_cast<std::int16_t>(-line.pad);
  } else if (settings[kMirrorImage] != 0) {
    const auto skipped = static_cast<std::size_t>(line.pad);
    line.bytes = line.bytes.subspan(std::min(skipped, line.bytes.size()));
    line.pad = 0;
  }
  FillPixels(line, row, Received(line, 1, bytes), bytes, white, [&](std::size_t i) {
    return Pixel{line.bytes[i * bytes], line.bytes[i * bytes + bytes - 1]};
  });
}

void FillPreviewGrey(const RawLine& line, Row row, bool white) {
  FillPixels(line, row, Received(line, 1, 1), 1, white, [&](std::size_t i) {
    const std::uint8_t grey = line.bytes[i];
    return Pixel{grey == 255 ? std::uint8_t{234} : Low8(grey - grey / 11u)};
  });
}

// Three planes behind each other, two pixels a byte, of each sample its three highest bits; they
// name one of 6 x 6 x 6 colours. With swapped channels the first plane weighs most.
void FillPalette(const RawLine& line, Row row, bool white) {
  constexpr std::uint8_t kSteps[] = {0, 1, 1, 2, 3, 4, 4, 5};
  const std::size_t lastPlane = std::min(2 * line.planeBytes, line.bytes.size());
  const auto received = 2 * static_cast<std::uint32_t>(line.bytes.size() - lastPlane);
  FillPixels(line, row, received, 1, white, [&](std::size_t i) {
    const auto step = [&](std::size_t plane) -> unsigned {
      const std::uint8_t pair = line.bytes[plane * line.planeBytes + i / 2];
      return kSteps[(i % 2 == 0 ? pair >> 5 : pair >> 1) & 7];
    };
    return Pixel{Low8(36 * step(line.swaps ? 0 : 2) + 6 * step(1) + step(line.swaps ? 2 : 0))};
  });
}

void FillTrueColor(const RawLine& line, Row row, bool white) {
  FillPixels(line, row, Received(line, 1, 3), 3, white, [&](std::size_t i) {
    const auto raw = line.bytes.subspan(3 * i, 3);
    return line.swaps ? Pixel{raw[2], raw[1], raw[0]} : Pixel{raw[0], raw[1], raw[2]};
  });
}

// Three bytes, one a channel, hold two pixels; each becomes 16 bits of which 12 are used.
void FillColor12(const RawLine& line, Row row, bool white) {
  FillPixels(line, row, Received(line, 2, 3), 2, white, [&](std::size_t i) {
    const auto sample = [&](std::size_t channel) -> unsigned {
      const std::uint8_t pair = line.bytes[i / 2 * 3 + channel];
      return i % 2 == 0 ? pair >> 4u : pair & 0x0Fu;
    };
    return Pixel{Low8(sample(2)), Low8(sample(1) << 4 | sample(0))};
  });
}

// 16-bit samples, of which a preview keeps the high byte.
void FillDeepColor(const RawLine& line, Row row, bool preview, bool white) {
  FillPixels(line, row, Received(line, 1, 6), preview ? 3 : 6, white, [&](std::size_t i) {
    Pixel color{};
    std::size_t at = 0;
    for (std::size_t channel = 0; channel < 3; ++channel) {
      const std::size_t sample = 6 * i + 2 * (line.swaps ? 2 - channel : channel);
      if (!preview) color[at++] = line.bytes[sample];
      color[at++] = line.bytes[sample + 1];
    }
    return color;
  });
}

}  // namespace

void MakeHostLine(std::uint32_t pixelType, const RawLine& line, const Record& settings, Row row) {
  const bool white = PadsAreWhite(settings);
  const bool preview = settings[kPreviewMode] != 0;
  switch (pixelType) {
    case 0:
      return FillLineArt(line, row, settings[kInvertMono] != 0, white);
    case 2:
      return preview ? FillPreviewGrey(line, row, white) : CopyGrey(line, row, 1, settings, white);
    case 4:
      return FillPalette(line, row, white);
    case 5:
      return FillTrueColor(line, row, white);
    case 6:
      return FillColor12(line, row, white);
    case 7:
      return FillDeepColor(line, row, preview, white);
    case 8:
      return CopyGrey(line, row, 2, settings, white);
    default:
      return;
  }
}

}  // namespace pmddb832::models
