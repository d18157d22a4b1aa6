#include "pmscan/scan/scan_area.h"

#include <algorithm>
#include <array>

#include "pmscan/command_line/failure.h"
#include "pmscan/report/error_codes.h"

namespace pmscan {
namespace {

// Pixels of an extent in hundredths of an inch, the fraction cut off.
std::uint64_t BedPixels(std::uint64_t hundredths, std::uint32_t dotsPerInch) {
  return hundredths * dotsPerInch / 100;
}

// Trims `length` so that it ends on the bed. False when it ends clearly beyond, or is empty.
bool Fit(std::uint32_t start, std::uint32_t& length, std::uint32_t bed, std::uint32_t dotsPerInch) {
  const std::uint64_t end = std::uint64_t{start} + length;
  if (end > BedPixels(std::uint64_t{bed} + 1, dotsPerInch)) return false;
  const std::uint64_t last = std::min(end, BedPixels(bed, dotsPerInch));
  length = last > start ? static_cast<std::uint32_t>(last - start) : 0;
  return length > 0;
}

}  // namespace

AreaRequest ParseArea(std::string_view text) {
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

std::string FormatBedSize(const BedSize& bed) {
  return FormatSize(bed.width / 100.0, bed.height / 100.0);
}

PixelArea PlaceArea(const std::optional<AreaRequest>& request, const BedSize& bed,
                    std::uint32_t dotsPerInch) {
  PixelArea area{0, 0, static_cast<std::uint32_t>(BedPixels(bed.width, dotsPerInch)),
                 static_cast<std::uint32_t>(BedPixels(bed.height, dotsPerInch))};
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

PixelArea TrimToGroups(const PixelArea& area, const BedSize& bed, std::uint32_t dotsPerInch,
                       bool isMirrored) {
  constexpr std::uint32_t kGroup = 8;
  // A mirrored area is anchored at its right edge and grows to the left.
  const std::uint64_t room = isMirrored ? std::uint64_t{area.left} + area.width
                                        : BedPixels(bed.width, dotsPerInch) - area.left;
  const std::uint32_t surplus = area.width % kGroup;
  const bool fits = surplus == 0 || area.width + (kGroup - surplus) <= room;
  PixelArea trimmed = area;
  if (!fits && area.width > kGroup) trimmed.width -= surplus;
  return trimmed;
}

}  // namespace pmscan
