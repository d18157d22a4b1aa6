#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <memory>

#include "wire/area_size.h"
#include "wire/command_level.h"
#include "wire/document_source.h"
#include "wire/status_reply.h"

namespace pmddb832 {

// The areas that a standard scanner has, as ScannerSettings::scanSource selects them.
enum StdArea : std::size_t { kFlatbedArea = 0, kOptionArea = 1, kFeederArea = 2 };

// What a standard scanner told of itself.
struct StdScannerFacts {
  LevelTraits level = kUnsupportedLevelTraits;
  // Dots per inch, as the scanner reported them; the last one, which areas refer to, is never 0.
  std::unique_ptr<std::uint16_t[]> resolutionList;
  std::size_t resolutionCount = 0;  // 0 until the scanner was identified
  std::array<AreaSize, 3> areas{};  // pixels at the last resolution
  bool optionAvailable = false;
  std::uint32_t optionKind = kFlatbed;  // the option unit that is fitted; kFlatbed for none
  std::uint16_t modelQuirk = 0;         // not 0: the highest resolution is doubled by the module

  std::uint16_t FirstResolution() const { return resolutionList[0]; }
  std::uint16_t LastResolution() const { return resolutionList[resolutionCount - 1]; }

  const AreaSize& SelectedArea(std::uint8_t scanSource) const {
    return scanSource < areas.size() ? areas[scanSource] : areas[kFlatbedArea];
  }
  bool IsFeederSelected(std::uint8_t scanSource) const {
    return scanSource != 0 && optionKind == kFeeder;
  }
};

// The areas of the option units in a status, in pixels at the last resolution.
AreaSize FeederArea(const StatusReply& reply, const StdScannerFacts& facts);
AreaSize TransparencyArea(const StatusReply& reply, const StdScannerFacts& facts);

}  // namespace pmddb832
