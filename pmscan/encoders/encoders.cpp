#include "pmscan/encoders/encoders.h"

#include <utility>

#include "pmscan/encoders/bmp_encoder.h"
#include "pmscan/encoders/jpeg_encoder.h"
#include "pmscan/encoders/pdf_encoder.h"
#include "pmscan/encoders/png_encoder.h"
#include "pmscan/encoders/tiff_encoder.h"

namespace pmscan {

std::unique_ptr<PageEncoder> MakeEncoder(Container container, ByteFile& file, PageForm form) {
  switch (container) {
    case Container::kTiff:
      return std::make_unique<TiffEncoder>(file, std::move(form));
    case Container::kPdf:
      return std::make_unique<PdfEncoder>(file, std::move(form));
    case Container::kBmp:
      return std::make_unique<BmpEncoder>(file, std::move(form));
    case Container::kJpeg:
      return std::make_unique<JpegEncoder>(file, std::move(form));
    default:
      return std::make_unique<PngEncoder>(file, std::move(form));
  }
}

}  // namespace pmscan
