#include "imaging/line_conversion.h"

#include "imaging/pixel_conversion.h"
#include "imaging/pixel_format.h"
#include "interface/scanner_settings.h"

namespace pmddb832 {

void ConvertLine(std::uint32_t pixelType, const ScanLine& line, HostRow row,
                 const LineConversion& conversion) {
  const ScannerSettings& settings = *currentSettings;
  const bool mirror = settings.mirrorImage != 0;
  const bool preview = settings.previewMode != 0;
  switch (pixelType) {
    case kLineArt:
      return Scanutil::Pix2Mono(line, row, conversion.pad, settings.invertMono != 0);
    case kGrey:
      if (preview) return Scanutil::Pix256MonoPreview(line, row, conversion.pad);
      return Scanutil::Pix256MonoFinal(line, row, conversion.pad, mirror);
    case kColour12:
      return Scanutil::Pix4096Color(line, row, conversion.pad);
    case kDeepColour:
      return Scanutil::PixSuperColor(line, row, conversion.convert, conversion.pad, preview);
    case kDeepGrey:
      return Scanutil::Pix4096Mono(line, row, conversion.pad, mirror);
    default:
      return;
  }
}

}  // namespace pmddb832
