#include "pmscan/native/picture_decoders.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <string_view>
#include <vector>

#include "pmscan/pictures/original_picture.h"

namespace pmscan {
namespace {

struct FileKind {
  std::string_view beginning;
  simulator::Picture (*decode)(const PictureSource& source);
};

constexpr std::array kFileKinds{
    FileKind{"\x89PNG\r\n", &DecodePng}, FileKind{"\xFF\xD8", &DecodeJpeg},
    FileKind{{"II*\0", 4}, &DecodeTiff}, FileKind{{"MM\0*", 4}, &DecodeTiff},
    FileKind{{"II+\0", 4}, &DecodeTiff}, FileKind{{"MM\0+", 4}, &DecodeTiff},
    FileKind{"BM", &DecodeBmp},
};

bool BeginsWith(std::span<const std::uint8_t> file, std::string_view beginning) {
  const std::string_view text(reinterpret_cast<const char*>(file.data()), file.size());
  return text.starts_with(beginning);
}

}  // namespace

simulator::Picture DecodePicture(const PictureSource& source) {
  for (const FileKind& kind : kFileKinds) {
    if (!BeginsWith(source.file, kind.beginning)) continue;
    return Upright(kind.decode(source), OrientationIn(source.file));
  }
  throw PictureError("it is no PNG, TIFF, JPEG or BMP file");
}

simulator::Picture BeginPicture(std::uint32_t width, std::uint32_t height, double dotsPerInch,
                                const PictureSource& source) {
  constexpr double kUsualDotsPerInch = 96;
  constexpr double kMostDotsPerInch = 1e6;
  if (width == 0 || height == 0) throw PictureError("the picture is empty");
  if (width > source.mostPixels / height) throw PictureError("the picture is too large");
  const bool isTold = dotsPerInch >= 1 && dotsPerInch <= kMostDotsPerInch;
  const double told = isTold ? std::round(dotsPerInch) : kUsualDotsPerInch;
  return {width, height, static_cast<std::uint32_t>(told), {}};
}

void AddPixels(std::span<const std::uint8_t> pixels, simulator::Picture& picture) {
  const std::vector<std::uint16_t> samples = OnWhite(pixels);
  picture.samples.insert(picture.samples.end(), samples.begin(), samples.end());
}

}  // namespace pmscan
