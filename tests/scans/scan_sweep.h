#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "simulator/device/scanner.h"
#include "simulator/page/picture.h"

namespace pmddb832::tests {

// What a sweep scans with, made for one mode and resolution: its bed is a little larger than
// 0.86 x 0.5 inches, and noise lies on it that has the resolution of the scan.
struct SweptScanner {
  std::string level;
  bool isExtended = false;
  std::vector<std::uint32_t> resolutions;
  const char* productName = nullptr;  // null: the usual one, whose deep samples have 12 bits
  std::uint8_t deepBits = 12;
};

// Scans with every mode, mirrored and not, inverted and not, five areas: the whole bed, one with
// odd edges, one that is cut at the right, one at the bottom, and a pixel in the corner. Every
// pixel of every picture is what lies on the bed there; no column is missing but those of a last
// group of eight that is incomplete on the bed.
void Sweep(const SweptScanner& scanner);

}  // namespace pmddb832::tests
