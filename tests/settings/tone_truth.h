#pragma once

#include <array>
#include <cstdint>
#include <vector>

#include "pmscan/settings/image_settings.h"
#include "simulator/page/picture.h"

namespace pmddb832::tests {

// What a simulated scanner makes of a document, worked out a pixel at a time by the rules that the
// documents tell: sharpness, colour matrix, gamma, grey, brightness, threshold or screen.
class ToneTruth {
 public:
  ToneTruth(const simulator::Picture& scanned, const pmscan::ImageSettings& imageSettings)
      : document_(scanned), image_(imageSettings) {}

  // Red, green and blue of a column and line, 16 bits each.
  std::array<std::uint16_t, 3> Colour(std::uint32_t x, std::uint32_t y) const;
  std::uint16_t Grey(std::uint32_t x, std::uint32_t y) const;
  bool IsWhite(std::uint32_t x, std::uint32_t y) const;

 private:
  double Sharpened(std::uint32_t x, std::uint32_t y, std::uint32_t channel) const;
  double Toned(double sample, std::uint32_t channel) const;
  std::array<double, 3> Mixed(std::uint32_t x, std::uint32_t y) const;
  std::uint16_t Brightened(double sample) const;

  const simulator::Picture& document_;
  const pmscan::ImageSettings& image_;
};

}  // namespace pmddb832::tests
