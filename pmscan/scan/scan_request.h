#pragma once

#include <cstdint>

#include "interface/scanner_settings.h"
#include "pmscan/scan/scan_area.h"
#include "pmscan/scan/scan_mode.h"

namespace pmscan {

// A scan that the scanner can do.
struct ScanRequest {
  ScanMode mode;
  std::uint32_t dotsPerInch = 0;
  PixelArea area;
  bool isMirrored = false;
  bool isInverted = false;  // line art only
};

// Whether the scanner knows the extended commands.
bool IsExtended(const pmddb832::ScannerSettings& settings);

// Throws Failure(kUnsupported) when the scanner told that it does not have the resolution.
void RequireResolution(std::uint32_t dotsPerInch, const pmddb832::ScannerSettings& settings);

// Throws Failure(kUnsupported) when the scanner does not have the mode.
void RequireMode(const ScanMode& mode, const pmddb832::ScannerSettings& settings);

// Throws Failure(kTooLarge) when two lines of the scan do not fit one transfer block.
void RequireTransferable(const ScanRequest& request, const pmddb832::ScannerSettings& settings);

// Writes the request into the host's members of the record.
void DescribeScan(const ScanRequest& request, pmddb832::ScannerSettings& settings);

}  // namespace pmscan
