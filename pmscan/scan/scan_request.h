#pragma once

#include <cstdint>

#include "interface/scanner_settings.h"
#include "pmscan/scan/scan_area.h"
#include "pmscan/scan/scan_mode.h"
#include "pmscan/settings/image_settings.h"

namespace pmscan {

// A scan that the scanner can do.
struct ScanRequest {
  ScanMode mode;
  std::uint32_t dotsPerInch = 0;  // on the bed
  PixelArea area;
  bool isMirrored = false;
  bool isInverted = false;  // line art only
  ImageSettings image{};
  std::uint32_t resolution = dotsPerInch;  // of the picture, which the zoom makes larger
};

// Whether the scanner knows the extended commands.
bool IsExtended(const pmddb832::ScannerSettings& settings);

// Dots per inch on the bed of a scan at a resolution and zoom. Throws Failure(kUnsupported) when
// the scanner's are no whole ones.
std::uint32_t ZoomedResolution(std::uint32_t resolution, std::uint32_t zoom,
                               const pmddb832::ScannerSettings& settings);

// Throws Failure(kUnsupported) when the scanner told that it does not have the resolution.
void RequireResolution(std::uint32_t dotsPerInch, const pmddb832::ScannerSettings& settings);

// Throws Failure(kUnsupported) when the scanner does not have the mode.
void RequireMode(const ScanMode& mode, const pmddb832::ScannerSettings& settings);

// Throws Failure(kTooLarge) when two lines of the scan do not fit one transfer block.
void RequireTransferable(const ScanRequest& request, const pmddb832::ScannerSettings& settings);

// Writes the request into the host's members of the record.
void DescribeScan(const ScanRequest& request, pmddb832::ScannerSettings& settings);

}  // namespace pmscan
