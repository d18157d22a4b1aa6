#include "pmscan/scan/scan_request.h"

#include <string>

#include "pmscan/command_line/failure.h"
#include "pmscan/report/error_codes.h"

namespace pmscan {
namespace {

// A transfer block of a scanner with extended commands holds at least two lines.
constexpr std::uint64_t kLongestExtendedLine = 65279 / 2;

constexpr std::uint64_t RoundUpToEight(std::uint64_t value) {
  return (value + 7) / 8 * 8;
}

// Bytes of a line in the scanner, which counts in groups of eight.
std::uint64_t TransferBytes(std::uint32_t width, std::uint32_t bitsPerPixel) {
  if (bitsPerPixel == 1) return RoundUpToEight((std::uint64_t{width} + 7) / 8);
  return RoundUpToEight(width) * (bitsPerPixel / 8);
}

// The unit of the record is 1/100 inch; the module rounds it back to the same pixel.
double Hundredths(std::uint32_t pixels, std::uint32_t dotsPerInch) {
  return pixels * 100.0 / dotsPerInch;
}

}  // namespace

bool IsExtended(const pmddb832::ScannerSettings& settings) {
  constexpr std::uint16_t kExtendedCommands = 3;
  return settings.scanInfoVariant == kExtendedCommands;
}

// The sets round in different ways, so that an area of the standard one would be another one.
std::uint32_t ZoomedResolution(std::uint32_t resolution, std::uint32_t zoom,
                               const pmddb832::ScannerSettings& settings) {
  const std::uint32_t product = resolution * zoom;
  if (IsExtended(settings) || product % 100 == 0) return (product + 50) / 100;
  throw Failure(kUnsupported, "A zoom of " + std::to_string(zoom) +
                                  " percent makes no whole number "
                                  "of dots per inch of " +
                                  std::to_string(resolution) +
                                  ": choose another --zoom or --resolution.");
}

void RequireResolution(std::uint32_t dotsPerInch, const pmddb832::ScannerSettings& settings) {
  const std::uint16_t lowest = settings.minResolutionCopy;
  const std::uint16_t highest = settings.maxResolutionCopy;
  if (dotsPerInch >= lowest && dotsPerInch <= highest) return;
  throw Failure(kUnsupported, "This scanner has no " + std::to_string(dotsPerInch) +
                                  " dots per inch; --resolution can be " + std::to_string(lowest) +
                                  " to " + std::to_string(highest) + ".");
}

void RequireMode(const ScanMode& mode, const pmddb832::ScannerSettings& settings) {
  if (!IsExtended(settings) || mode.layout != PixelLayout::kPalette) return;
  throw Failure(kUnsupported, "Scanners with extended commands have no mode " +
                                  std::string(mode.name) + ": scan with --mode colour.");
}

void RequireTransferable(const ScanRequest& request, const pmddb832::ScannerSettings& settings) {
  if (!IsExtended(settings)) return;
  const std::uint64_t bytes = TransferBytes(request.area.width, request.mode.bitsPerPixel);
  if (bytes <= kLongestExtendedLine) return;
  throw Failure(kTooLarge, "A line of " + std::to_string(request.area.width) + " pixels has " +
                               std::to_string(bytes) + " bytes in mode " +
                               std::string(request.mode.name) + "; this scanner transfers up to " +
                               std::to_string(kLongestExtendedLine) + ".");
}

void DescribeScan(const ScanRequest& request, pmddb832::ScannerSettings& settings) {
  settings.pixelType = request.mode.pixelType;
  settings.resolution = static_cast<std::uint16_t>(request.resolution);
  settings.originX = Hundredths(request.area.left, request.dotsPerInch);
  settings.originY = Hundredths(request.area.top, request.dotsPerInch);
  settings.areaWidthPx = request.area.width;
  settings.areaHeightPx = request.area.height;
  settings.areaLeftPx = request.area.left;
  settings.areaTopPx = request.area.top;
  settings.mirrorImage = request.isMirrored ? 1 : 0;
  settings.invertMono = request.isInverted ? 1 : 0;
  DescribeImage(request.image, settings);
}

}  // namespace pmscan
