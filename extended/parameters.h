#pragma once

#include <cstdint>

#include "extended/scan_plan.h"
#include "extended/scanner_facts.h"
#include "wire/parameter_block.h"

// The bytes of the parameter block, as they follow from the settings, the facts and the plan. A
// byte that a function does not mention stays as it was when an earlier block was sent.
namespace pmddb832 {

struct ScannerSettings;

// What the option unit is sent for a value. The transparency unit and a plain feeder know only off
// and on; the feeder variant and the flatbed get the value as it is.
std::uint32_t OptionUnitValue(const ScannerSettings& settings, std::uint32_t value);

// Option unit, colour mode and depth, halftone and enhancement, and the mode override where the
// settings have one.
void PutOptions(ParameterBlock& block, const ScannerSettings& settings, const ScanPlan& plan,
                std::uint8_t highBitDepth);

// Gamma code, and the brightness of a scan without gamma tables.
void PutGammaOfTables(ParameterBlock& block, const ScannerSettings& settings);
void PutGammaAndBrightness(ParameterBlock& block, const ScannerSettings& settings,
                           std::uint8_t gammaCode);

// Mirror, sharpness and parameter g.
void PutFilters(ParameterBlock& block, const ScannerSettings& settings);

// Resolution, area and lines per block.
void PutArea(ParameterBlock& block, const ExtScanPlan& plan);

}  // namespace pmddb832
