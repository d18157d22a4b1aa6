#include "extended/scan_plan.h"

#include <algorithm>

#include "imaging/line_placement.h"
#include "imaging/units.h"
#include "interface/scanner_settings.h"
#include "platform/trace.h"
#include "wire/value_names.h"

namespace pmddb832 {
namespace {

constexpr std::uint32_t kMostLinesPerBlock = 254;
constexpr std::uint8_t kColorModeBlueFirst = 0x23;

// Units of a line that is `pixels` wide.
std::uint32_t UnitsFor(std::uint32_t pixels, const PixelFormat& format) {
  return pixels / format.pixelsPerUnit + (pixels % format.pixelsPerUnit != 0 ? 1 : 0);
}

// Rounds up to a multiple of 4, except for the host's pixel type 4. No type of this set packs two
// pixels into a unit, the other case that stays unaligned.
std::uint32_t AlignLine(std::uint32_t bytes, std::uint32_t outputFormat) {
  return outputFormat == kPalette ? bytes : (bytes + 3) & ~3u;
}

bool IsByteAligned(std::uint8_t bitsPerSample) {
  return bitsPerSample >= 5 && bitsPerSample <= 12;
}

std::uint32_t Pixels(double length, double resolution) {
  return static_cast<std::uint32_t>(Scanutil::InchesToPixelsORWIA(length, resolution));
}

std::uint32_t PlanLinesPerBlock(const ExtScanPlan& plan) {
  const PixelFormat& format = plan.format;
  const std::uint32_t groupsOf8 = (plan.sentWidth / format.pixelsPerUnit + 7) / 8;
  const std::uint32_t lines = (kDataBufferBytes - 1) / (groupsOf8 * 8 * format.bytesPerUnit);
  return std::min(lines & ~1u, kMostLinesPerBlock);
}

}  // namespace

void TakePixelType(ExtScanPlan& plan, const ScannerSettings& settings) {
  const TraceScope trace{"Extcmd::SetPixelType"};
  const PixelFormat* format = FindPixelFormat(settings.pixelType, settings.previewMode != 0);
  if (format == nullptr || IsStandardSetOnly(settings.pixelType)) return;
  plan.format = *format;
  plan.pixelType = settings.pixelType;
  if (plan.pixelType == kTrueColour && plan.reorder) plan.format.colorMode = kColorModeBlueFirst;
}

ExtScanPlan PlanScan(const ExtScanPlan& before, const ScannerSettings& settings,
                     std::uint32_t outputFormat) {
  ExtScanPlan plan = before;
  TakeArea(plan, settings);
  plan.outputFormat = outputFormat;
  plan.reorder = outputFormat != kPlainOutputFormat;
  TakePixelType(plan, settings);
  plan.hostLineBytes =
      AlignLine(UnitsFor(plan.width, plan.format) * plan.format.bytesPerUnit, outputFormat);
  return plan;
}

ErrorCode SetUpError(const ExtScanPlan& plan) {
  if (plan.width > kWidestLine) return kAreaBeyondLimits;
  if (plan.hostLineBytes == 0) return kEmptyLine;
  return kDataBufferBytes / plan.hostLineBytes == 0 ? kTooLarge : kNoError;
}

bool PlanTransfer(ExtScanPlan& plan, const ScannerSettings& settings, const ExtScannerFacts& facts,
                  std::uint8_t bitsPerSample) {
  const std::int32_t resolution = Scanutil::InchesToPixelsORWIA(settings.resolution, settings.zoom);
  plan.dotsPerInch = static_cast<std::uint32_t>(resolution);
  plan.left = Pixels(settings.originX, resolution);
  plan.top = Pixels(settings.originY, resolution);
  const AreaSize& area = settings.scanSource == 0 ? facts.flatbed : facts.option;
  const std::uint32_t basicResolution = facts.identity.basicResolution;
  const std::uint32_t widthLimit = area.width * plan.dotsPerInch / basicResolution;
  const std::uint32_t heightLimit = area.height * plan.dotsPerInch / basicResolution;

  const bool mirror = settings.mirrorImage != 0;
  const LinePlacement placed = IsByteAligned(bitsPerSample)
                                   ? PlaceByteAligned(plan.left, plan.width, widthLimit, mirror)
                                   : PlaceInGroupsOf8(plan.left, plan.width, widthLimit, mirror);
  plan.padPixels = placed.padPixels;
  if (placed.width == 0 || placed.width > kWidestLine) return false;
  plan.sentLeft = placed.left;
  plan.sentWidth = placed.width;
  plan.linesToScan = plan.top + plan.height > heightLimit ? heightLimit - plan.top : plan.height;
  plan.rawLineBytes = plan.sentWidth * plan.format.bytesPerUnit / plan.format.pixelsPerUnit;
  const std::uint32_t linesPerBlock = PlanLinesPerBlock(plan);
  if (linesPerBlock == 0) return false;
  plan.linesPerBlock = linesPerBlock;
  return true;
}

}  // namespace pmddb832
