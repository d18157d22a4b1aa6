#include <doctest/doctest.h>

#include <algorithm>
#include <cstdlib>

#include "tests/encoders/encoded_pages.h"

namespace {

using namespace pmscan::tests;
using pmscan::Container;
using pmscan::PixelLayout;

// Two readers that have nothing in common: one takes the picture out of the page, the other draws
// the page.
std::string Poppler(const EncodedFile& file, int page) {
  const std::string number = std::to_string(page);
  return "pdfimages -f " + number + " -l " + number + " " + file.Name() +
         " pdf_picture 2>/dev/null && cat pdf_picture-000.p?m && rm pdf_picture-000.p?m";
}

std::string Mupdf(const EncodedFile& file, int page) {
  return "mutool draw -q -r 144 -A 0 -c rgb -F ppm -o - " + file.Name() + " " +
         std::to_string(page);
}

void CheckShows(const EncodedFile& file, int page, const Picture& truth) {
  CHECK(PictureFrom(Poppler(file, page)) == truth);
  CHECK(PictureFrom(Mupdf(file, page)) == truth);
}

int GreatestDifference(const Picture& read, const Picture& truth) {
  REQUIRE(read.samples.size() == truth.samples.size());
  int greatest = 0;
  for (std::size_t i = 0; i < truth.samples.size(); ++i) {
    greatest = std::max(greatest, std::abs(int{read.samples[i]} - int{truth.samples[i]}));
  }
  return greatest;
}

TEST_CASE("pdf encoder: two readers see every pixel of pictures without loss") {
  for (const PixelLayout layout : {PixelLayout::kBlackWhite, PixelLayout::kPalette}) {
    CAPTURE(static_cast<int>(layout));
    EncodedFile file(Container::kPdf, layout, "pdf_pixels.pdf");
    const Page page = NoisePage(layout, 302, 114, 9);
    file.Add(page);
    file.Finish();
    CheckShows(file, 1, ShownBy(page));
  }
}

// They make 8 bits of them, and one of them rounds.
TEST_CASE("pdf encoder: two readers see every pixel of deep pictures") {
  for (const PixelLayout layout : {PixelLayout::kGrey16, PixelLayout::kRgb48}) {
    CAPTURE(static_cast<int>(layout));
    EncodedFile file(Container::kPdf, layout, "pdf_deep.pdf");
    const Page page = NoisePage(layout, 302, 114, 9);
    file.Add(page);
    file.Finish();
    const Picture truth = InEightBits(ShownBy(page));
    CHECK(GreatestDifference(PictureFrom(Poppler(file, 1)), truth) <= 1);
    CHECK(PictureFrom(Mupdf(file, 1)) == truth);
  }
}

TEST_CASE("pdf encoder: pictures of 8 bits a sample are JPEG, and look the same to both readers") {
  for (const PixelLayout layout : {PixelLayout::kGrey8, PixelLayout::kBgr24}) {
    CAPTURE(static_cast<int>(layout));
    EncodedFile file(Container::kPdf, layout, "pdf_jpeg.pdf");
    const Page page = SmoothPage(layout, 302, 114);
    file.Add(page);
    file.Finish();
    const Picture truth = ShownBy(page);
    for (const std::string& reader : {Poppler(file, 1), Mupdf(file, 1)}) {
      CHECK(GreatestDifference(PictureFrom(reader), truth) <= 16);
    }
    CHECK(OutputOf("pdfimages -list " + file.Name()).find(" jpeg ") != std::string::npos);
  }
}

TEST_CASE("pdf encoder: a page is as large as what was scanned, and as high as what came") {
  EncodedFile file(Container::kPdf, PixelLayout::kBlackWhite, "pdf_pages.pdf");
  const Page first = NoisePage(PixelLayout::kBlackWhite, 300, 500, 1);
  Page second = NoisePage(PixelLayout::kBlackWhite, 76, 400, 2);
  file.Add(first);
  file.Add(NoisePage(PixelLayout::kBlackWhite, 90, 10, 3), 0);
  file.Add(second, 30);
  file.Finish();
  second.height = 30;
  CheckShows(file, 1, ShownBy(first));
  CheckShows(file, 2, ShownBy(second));
  const std::string told = OutputOf("pdfinfo -f 1 -l 2 " + file.Name());
  CAPTURE(told);
  CHECK(told.find("Pages:           2\n") != std::string::npos);
  CHECK(told.find("Page    1 size:  150 x 250 pts") != std::string::npos);
  CHECK(told.find("Page    2 size:  38 x 15 pts") != std::string::npos);
}

TEST_CASE("pdf encoder: line art is Group 4, and the file tells scanner, software and date") {
  EncodedFile file(Container::kPdf, PixelLayout::kBlackWhite, "pdf_info.pdf");
  file.Add(NoisePage(PixelLayout::kBlackWhite, 64, 64, 1));
  file.Finish();
  CHECK(OutputOf("pdfimages -list " + file.Name()).find(" ccitt ") != std::string::npos);
  const std::string told = OutputOf("TZ=UTC pdfinfo -isodates " + file.Name());
  CAPTURE(told);
  CHECK(told.find("Creator:         SCANNER (TM) QM-1\n") != std::string::npos);
  CHECK(told.find("Producer:        pmscan 7\n") != std::string::npos);
  CHECK(told.find("CreationDate:    2026-05-03T04:05:06") != std::string::npos);
}

// A reader that has to mend the cross references says so.
TEST_CASE("pdf encoder: every cross reference leads to its object") {
  EncodedFile file(Container::kPdf, PixelLayout::kGrey8, "pdf_xref.pdf");
  for (int page = 0; page < 4; ++page) {
    file.Add(SmoothPage(PixelLayout::kGrey8, 30, 20), page == 1 ? 0 : 20);
  }
  file.Finish();
  const std::string bytes = OutputOf("cat " + file.Name());
  const std::size_t start = std::strtoul(&bytes[bytes.rfind("startxref") + 10], nullptr, 10);
  CHECK(bytes.substr(start, 7) == "xref\n0 ");
  std::size_t entry = bytes.find('\n', start + 5) + 1;
  std::size_t number = 0;
  for (; bytes[entry + 18] == ' '; entry += 20, ++number) {
    if (number == 0) continue;
    const std::size_t place = std::strtoul(&bytes[entry], nullptr, 10);
    const std::string object = std::to_string(number) + " 0 obj\n";
    CHECK(bytes.substr(place, object.size()) == object);
  }
  CHECK(number == 13);
  CHECK(OutputOf("mutool info " + file.Name() + " 2>&1").find("repair") == std::string::npos);
}

}  // namespace
