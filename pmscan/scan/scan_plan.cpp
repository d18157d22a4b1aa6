#include "pmscan/scan/scan_plan.h"

#include <algorithm>
#include <string_view>

#include "pmscan/command_line/failure.h"
#include "pmscan/report/error_codes.h"
#include "pmscan/report/scanner_facts.h"
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

// The pixels of a line that groups can come from. At the highest resolutions a standard scanner's
// bed ends with its last whole group; from which on depends on the model, and this is the lowest.
std::uint32_t PixelsOfGroups(const ScanRequest& picture, const BedSize& bed,
                             const pmddb832::ScannerSettings& settings) {
  constexpr std::uint32_t kHighProduct = 60000;  // of resolution and zoom
  const std::uint32_t pixels = BedPixels(bed.width, picture.dotsPerInch);
  const bool endsWithGroup =
      !IsExtended(settings) && picture.resolution * picture.image.zoom > kHighProduct;
  return endsWithGroup ? pixels / kGroup * kGroup : pixels;
}

// The area of whole groups that holds `picture`, on a line of so many pixels. Trims a picture that
// no such area holds at its right edge; an area without pixels for one that lies behind all.
PixelArea WholeGroups(PixelArea& picture, std::uint32_t linePixels, bool startsAtLeftEdge) {
  PixelArea area = picture;
  const std::uint32_t before = startsAtLeftEdge ? picture.left : 0;
  const std::uint32_t most = linePixels / kGroup * kGroup;
  const std::uint32_t end = startsAtLeftEdge ? most : linePixels;
  picture.width = std::min(picture.width, end - std::min(picture.left, end));
  area.width = std::min((before + picture.width + kGroup - 1) / kGroup * kGroup, most);
  area.left = startsAtLeftEdge ? 0 : std::min(picture.left, linePixels - area.width);
  picture.width = std::min(picture.width, area.width - std::min(before, area.width));
  return area;
}

void RequireGroup(const PixelArea& picture) {
  if (picture.width > 0) return;
  throw Failure(kUnsupported,
                "The scanner delivers whole groups of eight pixels, and the area lies behind the "
                "last one: move it to the left.");
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
  // The module asks the product only where the host's model id tells it nothing, and then it
  // reports no model for a product with more bits.
  const bool asksProduct = IsExtended(settings) && ReadFacts(settings).model.empty();
  const bool isGreat = asksProduct && pmddb832::HasGreatDeepBits(product);
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
    plan.asked.area = WholeGroups(area, PixelsOfGroups(plan.picture, bed, settings), atLeftEdge);
    RequireGroup(area);
    plan.missing = wanted - area.width;
  }
  plan.window = WindowOf(plan);
  RequireTransferable(plan.asked, settings);
  return plan;
}

}  // namespace pmscan
