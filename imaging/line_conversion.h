#pragma once

#include <cstdint>

#include "imaging/scan_line.h"
#include "imaging/scan_plan.h"
#include "interface/scanner_settings.h"
#include "wire/document_source.h"

namespace pmddb832 {

// What turns raw lines into the host's rows.
struct LineConversion {
  std::uint32_t pixelType;
  std::int16_t pad;  // pixels cut off at the edge of the area
  bool reorder;      // the colour channels, for the host
  bool invert;       // line art
  bool mirror;
  bool preview;
  bool whiteFill;
};

// The conversion of the plan's lines, as the settings ask for it now.
inline LineConversion ConversionFor(const ScanPlan& plan, const ScannerSettings& settings) {
  const bool whiteFill = settings.docFeedOption == kFeeder && settings.mainStatusBit5 != 0 &&
                         settings.whitePadding != 0;
  return {plan.pixelType,
          static_cast<std::int16_t>(plan.padPixels),
          plan.reorder,
          settings.invertMono != 0,
          settings.mirrorImage != 0,
          settings.previewMode != 0,
          whiteFill};
}

// Converts lines. Types that have no conversion write nothing.
void ConvertLines(const ScanLines& lines, const HostRows& rows, const LineConversion& conversion);

}  // namespace pmddb832
