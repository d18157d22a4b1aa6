#include "imaging/line_conversion.h"

#include "imaging/pixel_conversion.h"
#include "imaging/pixel_format.h"

namespace pmddb832 {

void ConvertLines(const ScanLines& lines, const HostRows& rows, const LineConversion& conversion) {
  const auto& [type, pad, reorder, invert, mirror, preview, white] = conversion;
  switch (type) {
    case kLineArt:
      return Scanutil::Pix2Mono(lines, rows, pad, invert, white);
    case kGrey:
      if (preview) return Scanutil::Pix256MonoPreview(lines, rows, pad, white);
      return Scanutil::Pix256MonoFinal(lines, rows, pad, mirror, white);
    case kPalette:
      return Scanutil::Pix256Color(lines, rows, reorder, pad, white);
    case kTrueColour:
      return Scanutil::PixTrueColor(lines, rows, reorder, pad, white);
    case kColour12:
      return Scanutil::Pix4096Color(lines, rows, pad, white);
    case kDeepColour:
      return Scanutil::PixSuperColor(lines, rows, reorder, pad, preview, white);
    case kDeepGrey:
      return Scanutil::Pix4096Mono(lines, rows, pad, mirror, white);
    default:
      return;
  }
}

}  // namespace pmddb832
