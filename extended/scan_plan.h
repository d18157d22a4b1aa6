#pragma once

#include <cstdint>

#include "extended/scanner_facts.h"
#include "imaging/scan_plan.h"
#include "wire/error_codes.h"

namespace pmddb832 {

inline constexpr std::uint32_t kDataBufferBytes = 0xFF00;  // largest block and its status byte
inline constexpr std::uint32_t kWidestLine = 0x7FF0;       // pixels that a line may have

struct ExtScanPlan : ScanPlan {
  std::uint32_t dotsPerInch = 0;
  std::uint32_t rawLineBytes = 0;
  std::uint32_t linesToScan = 0;    // lines that the scanner will send
  std::uint32_t linesPerBlock = 0;  // even, at most 254
};

// Takes the pixel type of the settings, where the set knows it.
void TakePixelType(ExtScanPlan& plan, const ScannerSettings& settings);

// A scan as the settings ask for it, for the host's output format. What an earlier scan sent, and a
// pixel type that the set does not know, stay as they were.
ExtScanPlan PlanScan(const ExtScanPlan& before, const ScannerSettings& settings,
                     std::uint32_t outputFormat);

// Why a scan cannot be set up: kAreaBeyondLimits, kEmptyLine, kTooLarge; or kNoError.
ErrorCode SetUpError(const ExtScanPlan& plan);

// Plans what is sent of the area and how it arrives. False as soon as the line is empty, wider than
// kWidestLine, or too long for two of it to be a block. `facts` have a basic resolution.
[[nodiscard]] bool PlanTransfer(ExtScanPlan& plan, const ScannerSettings& settings,
                                const ExtScannerFacts& facts, std::uint8_t bitsPerSample);

}  // namespace pmddb832
