#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "simulator/device/scanner.h"
#include "simulator/page/picture.h"
#include "tests/scans/module_under_test.h"

namespace pmddb832::tests {

// What a host got from a scan: the rows in their order from the top, as the module announced them.
struct ScannedImage {
  std::uint32_t status = 0;  // of the last call
  std::uint32_t error = 0;   // PMGetScanError behind it
  std::uint32_t rowBytes = 0;
  std::vector<std::vector<std::uint8_t>> rows;
  std::uint32_t calls = 0;  // of PMAcquireImage
};

// A host that drives the module under test against a simulated scanner. The settings are those of
// a colour scan at 600 dpi of the whole bed.
class WholeScan {
 public:
  explicit WholeScan(simulator::Scanner& scanner);

  // Area in pixels at 600 dpi.
  void SetArea(std::uint32_t left, std::uint32_t top, std::uint32_t width, std::uint32_t height);

  bool Open() { return module->OpenScanner(&settings) == 1; }

  // Sets up and acquires until the image is done or a call fails, in buffers of `bufferBytes`;
  // 0 stands for one that holds the whole image.
  ScannedImage Acquire(std::uint32_t outputFormat, std::uint32_t bufferBytes = 0);

  // Only sets up; then AcquireBand delivers the next rows.
  AcquisitionSetup SetUp(std::uint32_t outputFormat);
  void AcquireBand(std::uint32_t bufferBytes, ScannedImage& image);

  ModuleUnderTest module;
  ScannerSettings settings{};

 private:
  std::uint32_t outputFormat_ = 0;
};

// A picture of `width` x `height` at 600 dpi in which no two neighbours are alike. A neutral one
// has equal channels; a black-and-white one holds 0 and 65535 only.
simulator::Picture ColourPicture(std::uint32_t width, std::uint32_t height);
simulator::Picture NeutralPicture(std::uint32_t width, std::uint32_t height);
simulator::Picture BlackAndWhitePicture(std::uint32_t width, std::uint32_t height);

// One sample of a picture; beyond its edges it is white. Channel 0 is red.
std::uint16_t Sample(const simulator::Picture& picture, std::uint32_t x, std::uint32_t y,
                     std::uint32_t channel);

// A picture that a scan of the pixel type shows without loss of its own: black and white for line
// art, neutral for the grey types, else in colour.
simulator::Picture PictureFor(std::uint32_t pixelType, std::uint32_t width, std::uint32_t height);

// All sentences on what the driver did wrong; empty when it did nothing wrong.
std::string Violations(const simulator::Scanner& scanner);

// The first `count` bytes of a row.
std::vector<std::uint8_t> First(const std::vector<std::uint8_t>& row, std::size_t count);

}  // namespace pmddb832::tests
