#include "pmscan/pictures/original_picture.h"

#include <algorithm>
#include <string_view>

namespace pmscan {
namespace {

using Bytes = std::span<const std::uint8_t>;

bool BeginsWith(Bytes bytes, std::string_view text) {
  return bytes.size() >= text.size() &&
         std::equal(text.begin(), text.end(), bytes.begin(), [](char letter, std::uint8_t byte) {
           return static_cast<std::uint8_t>(letter) == byte;
         });
}

// What lies from `start` on; empty beyond the end.
Bytes From(Bytes bytes, std::size_t start) {
  return start < bytes.size() ? bytes.subspan(start) : Bytes{};
}

// 0 beyond the end.
std::uint32_t Number(Bytes bytes, std::size_t start, std::size_t width, bool isBigEndian) {
  if (bytes.size() < width || start > bytes.size() - width) return 0;
  std::uint32_t number = 0;
  for (std::size_t i = 0; i < width; ++i) {
    number = number << 8 | bytes[start + (isBigEndian ? i : width - 1 - i)];
  }
  return number;
}

unsigned OrientationInTiff(Bytes tiff) {
  constexpr std::uint32_t kOrientation = 274;
  constexpr std::size_t kEntryBytes = 12;
  const bool isBigEndian = BeginsWith(tiff, "MM");
  if (!isBigEndian && !BeginsWith(tiff, "II")) return 1;
  const Bytes directory = From(tiff, Number(tiff, 4, 4, isBigEndian));
  const std::uint32_t entries = Number(directory, 0, 2, isBigEndian);
  for (std::size_t i = 0; i < entries; ++i) {
    const Bytes entry = From(directory, 2 + i * kEntryBytes);
    if (Number(entry, 0, 2, isBigEndian) != kOrientation) continue;
    const std::uint32_t value = Number(entry, 8, 2, isBigEndian);
    return value >= 1 && value <= 8 ? value : 1;
  }
  return 1;
}

unsigned OrientationInJpeg(Bytes file) {
  constexpr std::string_view kExif("Exif\0\0", 6);
  constexpr std::uint32_t kApp1 = 0xFFE1;
  constexpr std::uint32_t kScan = 0xFFDA;
  for (Bytes rest = From(file, 2); rest.size() > 4;) {
    const std::uint32_t marker = Number(rest, 0, 2, true);
    const Bytes segment = From(rest, 4);
    if (marker == kApp1 && BeginsWith(segment, kExif)) {
      return OrientationInTiff(From(segment, kExif.size()));
    }
    if (marker == kScan || marker < 0xFF00) break;
    rest = From(rest, 2 + std::max(Number(rest, 2, 2, true), 2u));
  }
  return 1;
}

unsigned OrientationInPng(Bytes file) {
  constexpr std::size_t kAroundData = 12;  // length, name, checksum
  for (Bytes rest = From(file, 8); !rest.empty();) {
    if (BeginsWith(From(rest, 4), "eXIf")) return OrientationInTiff(From(rest, 8));
    rest = From(rest, kAroundData + Number(rest, 0, 4, true));
  }
  return 1;
}

}  // namespace

unsigned OrientationIn(std::span<const std::uint8_t> file) {
  if (BeginsWith(file, "\xFF\xD8")) return OrientationInJpeg(file);
  if (BeginsWith(file, "\x89PNG")) return OrientationInPng(file);
  return OrientationInTiff(file);
}

simulator::Picture Upright(simulator::Picture stored, unsigned orientation) {
  if (orientation == 1) return stored;
  const bool isOnItsSide = orientation >= 5;
  const bool comesFromRight = orientation % 4 == 2 || orientation % 4 == 3;
  const bool comesFromBelow = orientation % 4 == 3 || orientation % 4 == 0;
  simulator::Picture upright{stored.width, stored.height, stored.dotsPerInch, {}};
  if (isOnItsSide) std::swap(upright.width, upright.height);
  upright.samples.reserve(stored.samples.size());
  for (std::uint32_t row = 0; row < upright.height; ++row) {
    for (std::uint32_t column = 0; column < upright.width; ++column) {
      std::uint32_t x = comesFromRight ? upright.width - 1 - column : column;
      std::uint32_t y = comesFromBelow ? upright.height - 1 - row : row;
      if (isOnItsSide) std::swap(x, y);
      const auto pixel = stored.samples.begin() +
                         static_cast<std::ptrdiff_t>((std::size_t{y} * stored.width + x) * 3);
      upright.samples.insert(upright.samples.end(), pixel, pixel + 3);
    }
  }
  return upright;
}

std::vector<std::uint16_t> OnWhite(std::span<const std::uint8_t> pixels) {
  constexpr unsigned kWhite = 255;
  constexpr unsigned kFullRange = 257;  // times it, 255 is 65535
  std::vector<std::uint16_t> samples;
  samples.reserve(pixels.size() / 4 * 3);
  for (std::size_t pixel = 0; pixel + 3 < pixels.size(); pixel += 4) {
    const unsigned opacity = pixels[pixel + 3];
    for (const std::size_t channel : {2u, 1u, 0u}) {
      const unsigned light = pixels[pixel + channel] * opacity + kWhite * (kWhite - opacity);
      samples.push_back(static_cast<std::uint16_t>((light * kFullRange + kWhite / 2) / kWhite));
    }
  }
  return samples;
}

}  // namespace pmscan
