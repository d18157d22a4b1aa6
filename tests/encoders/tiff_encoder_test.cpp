#include <doctest/doctest.h>

#include "tests/encoders/encoded_pages.h"

namespace {

using namespace pmscan::tests;
using pmscan::Container;
using pmscan::PixelLayout;

constexpr PixelLayout kLayouts[] = {PixelLayout::kBlackWhite, PixelLayout::kGrey8,
                                    PixelLayout::kGrey16,     PixelLayout::kPalette,
                                    PixelLayout::kBgr24,      PixelLayout::kRgb48};

Picture Read(const EncodedFile& file) {
  return PictureFrom("tifftopnm -byrow " + file.Name() + " 2>/dev/null");
}

void CheckShows(const EncodedFile& file, const Page& page) {
  CHECK(Read(file) == ShownBy(page));
}

TEST_CASE("tiff encoder: a reader sees every pixel of every layout and width") {
  for (const PixelLayout layout : kLayouts) {
    for (const std::uint32_t width : {1u, 7u, 64u, 301u, 5203u}) {
      CAPTURE(static_cast<int>(layout));
      CAPTURE(width);
      EncodedFile file(Container::kTiff, layout, "tiff_pixels.tif");
      const Page page = NoisePage(layout, width, 41, width);
      file.Add(page);
      file.Finish();
      CheckShows(file, page);
    }
  }
}

TEST_CASE("tiff encoder: a page that ends early is as high as the lines that came") {
  for (const PixelLayout layout : kLayouts) {
    CAPTURE(static_cast<int>(layout));
    EncodedFile file(Container::kTiff, layout, "tiff_short.tif");
    Page page = NoisePage(layout, 203, 60, 5);
    file.Add(page, 29);
    file.Finish();
    page.height = 29;
    CheckShows(file, page);
  }
}

TEST_CASE("tiff encoder: pages follow each other, and one without lines is none of them") {
  EncodedFile file(Container::kTiff, PixelLayout::kGrey8, "tiff_pages.tif");
  const Page first = NoisePage(PixelLayout::kGrey8, 33, 20, 1);
  const Page last = NoisePage(PixelLayout::kGrey8, 35, 10, 2);
  file.Add(first);
  file.Add(NoisePage(PixelLayout::kGrey8, 34, 300, 3), 0);
  file.Add(last);
  file.Finish();
  CheckShows(file, first);
  CHECK(OutputOf("tiffinfo " + file.Name() + " | grep -c 'Image Width'") == "2\n");
  CHECK(OutputOf("tiffcp " + file.Name() +
                 ",1 tiff_pages_1.tif && tifftopnm tiff_pages_1.tif "
                 "2>/dev/null | head -c 9; rm tiff_pages_1.tif") == "P5\n35 10\n");
}

TEST_CASE("tiff encoder: line art is Group 4, all else LZW, with resolution and origin") {
  for (const PixelLayout layout : kLayouts) {
    EncodedFile file(Container::kTiff, layout, "tiff_tags.tif");
    file.Add(NoisePage(layout, 100, 4, 1));
    file.Finish();
    const std::string tags = OutputOf("tiffinfo " + file.Name() + " 2>&1");
    CAPTURE(tags);
    const bool isLineArt = layout == PixelLayout::kBlackWhite;
    for (const char* part :
         {isLineArt ? "Compression Scheme: CCITT Group 4" : "Compression Scheme: LZW",
          "Resolution: 144, 144 pixels/inch", "Model: SCANNER (TM) QM-1\n", "Software: pmscan 7\n",
          "DateTime: 2026:05:03 04:05:06\n"}) {
      CAPTURE(part);
      CHECK(tags.find(part) != std::string::npos);
    }
    CHECK(tags.find("Warning") == std::string::npos);
  }
}

}  // namespace
