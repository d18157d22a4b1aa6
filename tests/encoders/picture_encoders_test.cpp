#include <doctest/doctest.h>

#include <cstdlib>

#include "pmscan/command_line/failure.h"
#include "tests/encoders/encoded_pages.h"

namespace {

using namespace pmscan::tests;
using pmscan::Container;
using pmscan::PixelLayout;

constexpr PixelLayout kPngLayouts[] = {PixelLayout::kBlackWhite, PixelLayout::kGrey8,
                                       PixelLayout::kGrey16,     PixelLayout::kPalette,
                                       PixelLayout::kBgr24,      PixelLayout::kRgb48};
constexpr PixelLayout kBmpLayouts[] = {PixelLayout::kBlackWhite, PixelLayout::kGrey8,
                                       PixelLayout::kPalette, PixelLayout::kBgr24};

// The page, of which `lines` came, as the reader shows it.
template <typename Layouts>
void CheckPixels(Container container, const Layouts& layouts, const std::string& reader) {
  for (const PixelLayout layout : layouts) {
    for (const std::uint32_t width : {1u, 7u, 301u}) {
      for (const std::uint32_t lines : {37u, 1u}) {
        CAPTURE(static_cast<int>(layout));
        CAPTURE(width);
        CAPTURE(lines);
        EncodedFile file(container, layout, "picture_" + reader);
        Page page = NoisePage(layout, width, 37, width + lines);
        file.Add(page, lines);
        file.Finish();
        page.height = lines;
        CHECK(PictureFrom(reader + " " + file.Name() + " 2>/dev/null") == ShownBy(page));
      }
    }
  }
}

TEST_CASE("png encoder: a reader sees every pixel, also of a page that ends early") {
  CheckPixels(Container::kPng, kPngLayouts, "pngtopnm");
}

TEST_CASE("bmp encoder: a reader sees every pixel, also of a page that ends early") {
  CheckPixels(Container::kBmp, kBmpLayouts, "bmptopnm");
}

TEST_CASE("png encoder: the file tells its resolution, scanner, software and date") {
  EncodedFile file(Container::kPng, PixelLayout::kGrey8, "picture_text.png");
  file.Add(NoisePage(PixelLayout::kGrey8, 9, 4, 1));
  file.Finish();
  const std::string bytes = OutputOf("cat " + file.Name());
  CHECK(bytes.find(std::string("tEXtSource\0SCANNER (TM) QM-1", 28)) != std::string::npos);
  CHECK(bytes.find(std::string("tEXtSoftware\0pmscan 7", 21)) != std::string::npos);
  CHECK(bytes.find(std::string("tEXtCreation Time\0"
                               "2026-05-03T04:05:06",
                               37)) != std::string::npos);
  // 144 dots per inch are 5669 per metre.
  CHECK(bytes.find(std::string("pHYs\0\0\x16\x25\0\0\x16\x25\x01", 13)) != std::string::npos);
}

TEST_CASE("bmp encoder: the file tells its size and resolution") {
  EncodedFile file(Container::kBmp, PixelLayout::kBgr24, "picture_head.bmp");
  file.Add(NoisePage(PixelLayout::kBgr24, 5, 9, 1), 3);
  file.Finish();
  const std::string bytes = OutputOf("cat " + file.Name());
  const std::string head("BM\x66\0\0\0\0\0\0\0\x36\0\0\0\x28\0\0\0\x05\0\0\0\x03\0\0\0\x01\0\x18\0",
                         30);
  CHECK(bytes.substr(0, 30) == head);
  CHECK(bytes.substr(38, 8) == std::string("\x25\x16\0\0\x25\x16\0\0", 8));
  CHECK(bytes.size() == 0x66);
}

// The greatest and the mean difference of two pictures of the same size.
struct Difference {
  int greatest = 0;
  double mean = 0;
};

Difference Compare(const Picture& read, const Picture& truth) {
  REQUIRE(read.width == truth.width);
  REQUIRE(read.height == truth.height);
  Difference difference;
  for (std::size_t i = 0; i < truth.samples.size(); ++i) {
    const int apart = std::abs(int{read.samples[i]} - int{truth.samples[i]});
    difference.greatest = std::max(difference.greatest, apart);
    difference.mean += apart / static_cast<double>(truth.samples.size());
  }
  return difference;
}

TEST_CASE("jpeg encoder: a reader sees nearly the same, also of a page that ends early") {
  for (const PixelLayout layout : {PixelLayout::kGrey8, PixelLayout::kBgr24}) {
    for (const std::uint32_t width : {1u, 8u, 301u}) {
      for (const std::uint32_t lines : {203u, 64u, 29u}) {
        CAPTURE(static_cast<int>(layout));
        CAPTURE(width);
        CAPTURE(lines);
        EncodedFile file(Container::kJpeg, layout, "picture_jpeg.jpg");
        Page page = SmoothPage(layout, width, 203);
        file.Add(page, lines);
        file.Finish();
        page.height = lines;
        const Difference difference =
            Compare(PictureFrom("jpegtopnm " + file.Name() + " 2>/dev/null"), ShownBy(page));
        CHECK(difference.greatest <= 16);
        CHECK(difference.mean < 2);
      }
    }
  }
}

TEST_CASE("jpeg encoder: noise comes back in its blocks") {
  for (const PixelLayout layout : {PixelLayout::kGrey8, PixelLayout::kBgr24}) {
    EncodedFile file(Container::kJpeg, layout, "picture_noise.jpg");
    const Page page = NoisePage(layout, 131, 77, 3);
    file.Add(page);
    file.Finish();
    const Difference difference =
        Compare(PictureFrom("jpegtopnm " + file.Name() + " 2>/dev/null"), ShownBy(page));
    CHECK(difference.mean < 9);
  }
}

TEST_CASE("jpeg encoder: the file tells its resolution, scanner, software and date") {
  EncodedFile file(Container::kJpeg, PixelLayout::kGrey8, "picture_exif.jpg");
  file.Add(SmoothPage(PixelLayout::kGrey8, 20, 20));
  file.Finish();
  const std::string bytes = OutputOf("cat " + file.Name());
  CHECK(bytes.substr(2, 18) == std::string("\xFF\xE0\0\x10JFIF\0\x01\x01\x01\0\x90\0\x90\0\0", 18));
  const std::string exif = OutputOf("file " + file.Name());
  CAPTURE(exif);
  CHECK(exif.find("model=SCANNER (TM) QM-1, software=pmscan 7, datetime=2026:05:03 04:05:06") !=
        std::string::npos);
}

std::string RefusalOf(Container container, const std::string& name, std::uint32_t width,
                      std::uint32_t height) {
  try {
    EncodedFile file(container, PixelLayout::kBgr24, name);
    file.Add({PixelLayout::kBgr24, width, height}, 0);
  } catch (const pmscan::Failure& failure) {
    return std::to_string(failure.code) + " " + failure.what();
  }
  return "accepted";
}

TEST_CASE("encoders: a picture that is too large for its format is refused before its first line") {
  CHECK(RefusalOf(Container::kBmp, "large.bmp", 40000, 40000).starts_with("65 large.bmp: a BMP"));
  CHECK(RefusalOf(Container::kJpeg, "large.jpg", 70000, 9).starts_with("65 large.jpg: a JPEG"));
  CHECK(RefusalOf(Container::kPdf, "large.pdf", 9, 70000).starts_with("65 large.pdf: a JPEG"));
  CHECK(RefusalOf(Container::kPng, "large.png", 9, 70000) == "accepted");
}

TEST_CASE("encoders: a file that cannot be written is named with the reason") {
  CHECK(RefusalOf(Container::kPng, "none/a.png", 9, 9) ==
        "73 none/a.png: cannot create the file: No such file or directory.");
}

}  // namespace
