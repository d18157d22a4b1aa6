#include "imaging/line_conversion.h"

#include "imaging/pixel_conversion.h"
#include "imaging/pixel_format.h"

namespace pmddb832 {

void ConvertLine(const ScanLine& line, HostRow row, const LineConversion& conversion) {
  const auto& [type, pad, reorder, invert, mirror, preview, white] = conversion;
  switch (type) {
    case kLineArt:
      return Scanutil::Pix2Mono(line, row, pad, invert, white);
    case kGrey:
      if (preview) return Scanutil::Pix256MonoPreview(line, row, pad, white);
      return Scanutil::Pix256MonoFinal(line, row, pad, mirror, white);
    case kPalette:
      return Scanutil::Pix256Color(line, row, reorder, pad, white);
    case kTrueColour:
      return Scanutil::PixTrueColor(line, row, reorder, pad, white);
    case kColour12:
      return Scanutil::Pix4096Color(line, row, pad, white);
    case kDeepColour:
      return Scanutil::PixSuperColor(line, row, reorder, pad, preview, white);
    case kDeepGrey:
      return Scanutil::Pix4096Mono(line, row, pad, mirror, white);
    default:
      return;
  }
}

}  // namespace pmddb832
