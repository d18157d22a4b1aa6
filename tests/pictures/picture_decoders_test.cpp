#include "pmscan/native/picture_decoders.h"

#include <doctest/doctest.h>

#include "tests/pictures/sample_pictures.h"

namespace {

using pmscan::tests::SamplePicture;

constexpr std::uint64_t kMostPixels = 1000;

pmscan::PictureSource SourceOf(const std::string& file, std::uint64_t mostPixels = kMostPixels) {
  return {{reinterpret_cast<const std::uint8_t*>(file.data()), file.size()}, mostPixels};
}

// Whether what came is the beginning of the picture that is meant, or nothing.
bool IsRefused(const std::string& file) {
  try {
    pmscan::DecodePicture(SourceOf(file));
    return false;
  } catch (const pmscan::PictureError&) {
    return true;
  }
}

TEST_CASE("pmscan: an original that ends before its pixels do is refused") {
  for (const SamplePicture& sample : pmscan::tests::kSamplePictures) {
    CAPTURE(sample.name);
    const std::string file = FileOf(sample);
    // Behind the pixels a PNG file has checksums and its end, 16 bytes.
    const std::size_t behind = file.starts_with("\x89PNG") ? 16 : 0;
    for (std::size_t bytes = 0; bytes < file.size() - behind; ++bytes) {
      CAPTURE(bytes);
      CHECK(IsRefused(file.substr(0, bytes)));
    }
  }
}

TEST_CASE("pmscan: an original of too many pixels is refused") {
  for (const SamplePicture& sample : pmscan::tests::kSamplePictures) {
    CAPTURE(sample.name);
    const std::string file = FileOf(sample);
    const std::uint64_t pixels = std::uint64_t{sample.width} * sample.height;
    CHECK_NOTHROW(pmscan::DecodePicture(SourceOf(file, pixels)));
    CHECK_THROWS_WITH_AS(pmscan::DecodePicture(SourceOf(file, pixels - 1)),
                         "the picture is too large", pmscan::PictureError);
  }
}

}  // namespace
