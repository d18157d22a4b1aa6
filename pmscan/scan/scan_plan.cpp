#include "pmscan/scan/scan_plan.h"

#include <algorithm>
#include <string_view>

#include "pmscan/command_line/failure.h"
#include "pmscan/report/error_codes.h"
#include "wire/command_level.h"
#include "wire/deep_samples.h"

namespace pmscan {
namespace {

constexpr std::uint32_t kGroup = 8;  // pixels

// Scanners with extended commands deliver samples of 5 to 12 bits pixel by pixel.
bool ComesInGroups(const ScanPlan& plan, const pmddb832::ScannerSettings& settings) {
  if (!IsExtended(settings)) return true;
  const ScanMode& mode = plan.picture.mode;
  if (IsDeep(mode.layout)) return plan.sampleBits > pmddb832::kUsualDeepBits;
  return mode.isPacked || mode.layout == PixelLayout::kBlackWhite;
}

bool CanMirror(const pmddb832::ScannerSettings& settings) {
  return IsExtended(settings) || pmddb832::TraitsOf(settings.commandLevel).mirror;
}

// A scanner with standard commands and a feeder is taken to be meant to centre a page of its whole
// height at its lowest resolution: the module puts the area to the left edge then.
bool StartsAtLeftEdge(const ScanRequest& picture, const BedSize& bed,
                      const pmddb832::ScannerSettings& settings) {
  return !IsExtended(settings) && settings.docFeedOption == pmddb832::kFeeder &&
         picture.resolution == settings.minResolutionCopy &&
         picture.area.height == BedPixels(bed.height, picture.resolution);
}

// The area of whole groups that holds `picture`, on a bed of so many pixels. Trims a picture that
// no such area holds at its right edge.
PixelArea WholeGroups(PixelArea& picture, std::uint32_t bedPixels, bool startsAtLeftEdge) {
  PixelArea area = picture;
  const std::uint32_t before = startsAtLeftEdge ? picture.left : 0;
  const std::uint32_t most = bedPixels / kGroup * kGroup;
  if (most <= before) return area;
  area.width = std::min((before + picture.width + kGroup - 1) / kGroup * kGroup, most);
  area.left = startsAtLeftEdge ? 0 : std::min(picture.left, bedPixels - area.width);
  picture.width = std::min(picture.width, area.width - before);
  return area;
}

LineWindow WindowOf(const ScanPlan& plan) {
  const PixelArea& picture = plan.picture.area;
  const PixelArea& area = plan.asked.area;
  const std::uint32_t left = picture.left - area.left;
  const std::uint32_t right = area.width - picture.width - left;
  return {plan.picture.mode.bitsPerPixel, plan.asked.isMirrored ? right : left, picture.width,
          plan.picture.isMirrored && !plan.asked.isMirrored};
}

}  // namespace

std::uint8_t DeepBits(const pmddb832::ScannerSettings& settings) {
  const std::string_view product(settings.productNameReply, sizeof settings.productNameReply - 1);
  const bool isGreat = IsExtended(settings) && pmddb832::HasGreatDeepBits(product);
  return isGreat ? pmddb832::kGreatDeepBits : pmddb832::kUsualDeepBits;
}

ScanPlan PlanScan(const Options& options, const pmddb832::ScannerSettings& settings) {
  const BedSize bed = RequireFitted(options.source, settings);
  const std::uint32_t resolution =
      options.dotsPerInch != 0 ? options.dotsPerInch : settings.minResolutionCopy;
  const std::uint32_t dotsPerInch = ZoomedResolution(resolution, options.image.zoom, settings);
  RequireResolution(resolution, settings);
  RequireResolution(dotsPerInch, settings);
  RequireMode(options.mode, settings);
  RequireImageSettings(options.image, settings);
  ScanPlan plan;
  plan.sampleBits = DeepBits(settings);
  plan.picture = {options.mode,       dotsPerInch,        PlaceArea(options.area, bed, dotsPerInch),
                  options.isMirrored, options.isInverted, options.image,
                  resolution};
  plan.asked = plan.picture;
  plan.asked.isMirrored = options.isMirrored && CanMirror(settings);
  if (ComesInGroups(plan, settings)) {
    const bool atLeftEdge = StartsAtLeftEdge(plan.picture, bed, settings);
    PixelArea& area = plan.picture.area;
    const std::uint32_t wanted = area.width;
    plan.asked.area = WholeGroups(area, BedPixels(bed.width, dotsPerInch), atLeftEdge);
    plan.missing = wanted - area.width;
  }
  plan.window = WindowOf(plan);
  RequireTransferable(plan.asked, settings);
  return plan;
}

}  // namespace pmscan
