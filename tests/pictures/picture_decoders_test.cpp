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

// Some versions of Wine take the bytes of these in the wrong order.
TEST_CASE("pmscan: an original may be a TIFF file of 16 bits with the high bytes first") {
  const SamplePicture sample{
      "",
      "4D4D002A00000008000C010000030000000100010000010100030000000100020000010200030000"
      "00030000009E01030003000000010001000001060003000000010002000001110004000000010000"
      "00B401150003000000010003000001160003000000010002000001170004000000010000000C011A"
      "000500000001000000A4011B000500000001000000AC012800030000000100020000000000000010"
      "00100010000000C800000001000000C8000000010102FFFE80017F8000FFFF00",
      200,
      1,
      2,
      {0x0102, 0xFFFE, 0x8001, 0x7F80, 0x00FF, 0xFF00}};
  CHECK(pmscan::DecodePicture(SourceOf(FileOf(sample))).samples == sample.samples);
}

}  // namespace
