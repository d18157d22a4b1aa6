#include "tests/scans/whole_scan.h"

namespace pmddb832::tests {
namespace {

constexpr std::uint32_t kResolution = 600;
constexpr std::uint8_t kUntouched = 0xA5;

template <class Value>
simulator::Picture MakePicture(std::uint32_t width, std::uint32_t height, Value value) {
  simulator::Picture picture{width, height, kResolution, {}};
  for (std::uint32_t y = 0; y < height; ++y) {
    for (std::uint32_t x = 0; x < width; ++x) {
      for (std::uint32_t channel = 0; channel < 3; ++channel) {
        picture.samples.push_back(value(x, y, channel));
      }
    }
  }
  return picture;
}

// The output formats whose bands come from the top.
bool ComesTopDown(std::uint32_t outputFormat) {
  return outputFormat == 1 || outputFormat == 3 || outputFormat == 5 || outputFormat == 6;
}

std::uint16_t Scatter(std::uint32_t x, std::uint32_t y, std::uint32_t channel) {
  return static_cast<std::uint16_t>((x * 7919 + y * 104729 + channel * 1299709) * 2654435761u >>
                                    13);
}

}  // namespace

WholeScan::WholeScan(simulator::Scanner& scanner) {
  settings.deviceInterface = &scanner;
  settings.useDeviceInterface = 1;
  settings.pixelType = 5;
  settings.resolution = kResolution;
  settings.zoom = 100;
  settings.gamma = 100;
  settings.thresholdT = kThresholdUnset;
  SetArea(0, 0, 64, 48);
}

void WholeScan::SetArea(std::uint32_t left, std::uint32_t top, std::uint32_t width,
                        std::uint32_t height) {
  settings.originX = left * 100.0 / kResolution;
  settings.originY = top * 100.0 / kResolution;
  settings.areaLeftPx = left;
  settings.areaTopPx = top;
  settings.areaWidthPx = width;
  settings.areaHeightPx = height;
}

ScannedImage WholeScan::Acquire(std::uint32_t outputFormat, std::uint32_t bufferBytes) {
  const AcquisitionSetup setup = SetUp(outputFormat);
  ScannedImage image;
  image.rowBytes = setup.lineBytes;
  image.status = setup.status;
  image.error = module->GetScanError();
  if (setup.status != kAcquisitionGoOn) return image;
  const std::uint32_t size = bufferBytes != 0 ? bufferBytes : setup.lineBytes * setup.heightLines;
  while (image.status == kAcquisitionGoOn && image.rows.size() < setup.heightLines) {
    AcquireBand(size, image);
  }
  return image;
}

AcquisitionSetup WholeScan::SetUp(std::uint32_t outputFormat) {
  outputFormat_ = outputFormat;
  AcquisitionSetup setup{};
  module->InitAcquire(outputFormat, nullptr, &setup);
  return setup;
}

void WholeScan::AcquireBand(std::uint32_t bufferBytes, ScannedImage& image) {
  std::vector<std::uint8_t> buffer(bufferBytes, kUntouched);
  AcquisitionBand band{};
  module->AcquireImage(buffer.data(), bufferBytes, &band);
  ++image.calls;
  image.status = band.status;
  image.error = module->GetScanError();
  if (band.status != kAcquisitionGoOn) return;
  for (std::uint32_t i = 0; i < band.lines; ++i) {
    const std::size_t row = ComesTopDown(outputFormat_) ? i : band.lines - 1 - i;
    const auto start = buffer.begin() + static_cast<std::ptrdiff_t>(row * image.rowBytes);
    image.rows.emplace_back(start, start + static_cast<std::ptrdiff_t>(image.rowBytes));
  }
}

simulator::Picture ColourPicture(std::uint32_t width, std::uint32_t height) {
  return MakePicture(width, height, Scatter);
}

simulator::Picture NeutralPicture(std::uint32_t width, std::uint32_t height) {
  return MakePicture(width, height, [](std::uint32_t x, std::uint32_t y, std::uint32_t) {
    return Scatter(x, y, 0);
  });
}

simulator::Picture BlackAndWhitePicture(std::uint32_t width, std::uint32_t height) {
  return MakePicture(width, height,
                     [](std::uint32_t x, std::uint32_t y, std::uint32_t) -> std::uint16_t {
                       return (Scatter(x, y, 0) & 0x100) != 0 ? 0xFFFF : 0;
                     });
}

std::uint16_t Sample(const simulator::Picture& picture, std::uint32_t x, std::uint32_t y,
                     std::uint32_t channel) {
  if (x >= picture.width || y >= picture.height) return 0xFFFF;
  return picture.samples[(std::size_t{y} * picture.width + x) * 3 + channel];
}

simulator::Picture PictureFor(std::uint32_t pixelType, std::uint32_t width, std::uint32_t height) {
  if (pixelType == 0) return BlackAndWhitePicture(width, height);
  const bool grey = pixelType == 2 || pixelType == 8;
  return grey ? NeutralPicture(width, height) : ColourPicture(width, height);
}

std::string Violations(const simulator::Scanner& scanner) {
  std::string all;
  for (const std::string& violation : scanner.Violations()) all += violation + "\n";
  return all;
}

std::vector<std::uint8_t> First(const std::vector<std::uint8_t>& row, std::size_t count) {
  return {row.begin(), row.begin() + static_cast<std::ptrdiff_t>(count)};
}

}  // namespace pmddb832::tests
