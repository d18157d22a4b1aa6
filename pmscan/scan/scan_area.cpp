#include "pmscan/scan/scan_area.h"

#include <algorithm>
#include <array>

#include "pmscan/command_line/failure.h"
#include "pmscan/report/error_codes.h"
#include "pmscan/settings/paper_sizes.h"

namespace pmscan {
namespace {

// Trims `length` so that it ends on the bed. False when it ends clearly beyond, or is empty.
bool Fit(std::uint32_t start, std::uint32_t& length, std::uint32_t bed, std::uint32_t dotsPerInch) {
  const std::uint64_t end = std::uint64_t{start} + length;
  if (end > BedPixels(bed + 1, dotsPerInch)) return false;
  const std::uint64_t last = std::min<std::uint64_t>(end, BedPixels(bed, dotsPerInch));
  length = last > start ? static_cast<std::uint32_t>(last - start) : 0;
  return length > 0;
}

[[noreturn]] void RefusePaper(std::string_view text) {
  const std::string meant(NearestPaperName(text));
  throw Failure(kUsage, "There is no area \"" + std::string(text) + "\"; " +
                            (meant.empty() ? "" : "did you mean \"" + meant + "\"? ") +
                            "--area can be LEFT,TOP,WIDTH,HEIGHT, or: " + PaperNames() + ".");
}

}  // namespace

AreaRequest ParseArea(std::string_view text) {
  if (const PaperSize* const paper = FindPaperSize(text)) {
    return {{}, {}, paper->width, paper->height};
  }
  if (text.find(',') == std::string_view::npos) RefusePaper(text);
  std::array<Length, 4> lengths{};
  std::string_view rest = text;
  for (std::size_t i = 0; i < lengths.size(); ++i) {
    const std::size_t comma = rest.find(',');
    const bool isLast = i + 1 == lengths.size();
    if ((comma == std::string_view::npos) != isLast) {
      throw Failure(kUsage, "\"" + std::string(text) + "\" is not LEFT,TOP,WIDTH,HEIGHT.");
    }
    lengths[i] = ParseLength(rest.substr(0, comma));
    if (!isLast) rest.remove_prefix(comma + 1);
  }
  return {lengths[0], lengths[1], lengths[2], lengths[3]};
}

std::uint32_t BedPixels(std::uint32_t hundredths, std::uint32_t dotsPerInch) {
  return static_cast<std::uint32_t>(std::uint64_t{hundredths} * dotsPerInch / 100);
}

std::string FormatBedSize(const BedSize& bed) {
  return FormatSize(bed.width / 100.0, bed.height / 100.0);
}

PixelArea PlaceArea(const std::optional<AreaRequest>& request, const BedSize& bed,
                    std::uint32_t dotsPerInch) {
  PixelArea area{0, 0, BedPixels(bed.width, dotsPerInch), BedPixels(bed.height, dotsPerInch)};
  if (request) {
    area = {ToPixels(request->left, dotsPerInch), ToPixels(request->top, dotsPerInch),
            ToPixels(request->width, dotsPerInch), ToPixels(request->height, dotsPerInch)};
  }
  if (area.width == 0 || area.height == 0) {
    throw Failure(kUnsupported, "The area is empty at " + std::to_string(dotsPerInch) +
                                    " dots per inch: it has " + std::to_string(area.width) + " x " +
                                    std::to_string(area.height) + " pixels.");
  }
  if (!Fit(area.left, area.width, bed.width, dotsPerInch) ||
      !Fit(area.top, area.height, bed.height, dotsPerInch)) {
    throw Failure(kUnsupported,
                  "The area reaches beyond the source, which is " + FormatBedSize(bed) + ".");
  }
  return area;
}

}  // namespace pmscan
