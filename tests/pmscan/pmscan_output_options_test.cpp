#include <doctest/doctest.h>

#include <iterator>
#include <sstream>

#include "pmscan/command_line/command_line.h"
#include "tests/pmscan/refusal.h"

namespace {

using pmscan::Container;
using pmscan::Options;

// The arguments with a blank between each two.
Options Parse(const std::string& text) {
  std::istringstream stream(text);
  return pmscan::ParseCommandLine({std::istream_iterator<std::string>(stream), {}});
}

std::string Refusal(const std::string& text) {
  return pmscan::tests::RefusalOf([&] { Parse(text); });
}

TEST_CASE("pmscan: a format that is named wins over what the file's name ends in") {
  CHECK(Parse("scan -o a.pdf").format.container == Container::kPdf);
  CHECK(Parse("scan -o a.pdf --format TIF").format.container == Container::kTiff);
  CHECK(Parse("scan -o page --format jpg").format.container == Container::kJpeg);
  CHECK(
      Refusal("scan -o page --format pdff").starts_with("64 There is no format \"pdff\"; did you"));
}

TEST_CASE("pmscan: standard output takes one page, as PNG unless another format is named") {
  CHECK(Parse("scan -o -").format.container == Container::kPng);
  CHECK(Parse("scan -o -").names.Of(1) == "-");
  CHECK(Parse("scan -o - --format pdf").format.container == Container::kPdf);
  CHECK(Refusal("scan -o - --format pdf --pages 2").starts_with("65 "));
  CHECK(Refusal("scan --batch - --format tif --source feeder").starts_with("65 "));
  CHECK(Refusal("scan -o - --json").starts_with("65 "));
}

TEST_CASE("pmscan: several pages go into a file that holds them") {
  CHECK(Parse("scan -o a.pdf --pages 2").pages == 2);
  CHECK(Parse("scan -o a.tif --pages 2").pages == 2);
  CHECK(Refusal("scan -o a.png --pages 2").starts_with("65 "));
}

TEST_CASE("pmscan: a quality is for files that hold JPEG, and 1 to 100") {
  CHECK(Parse("scan -o a.jpg --quality 40").quality == 40);
  CHECK(Parse("scan -o a.pdf --mode grey --quality 40").quality == 40);
  CHECK(Refusal("scan -o a.pdf --mode lineart --quality 40") ==
        "65 PDF files of line art, 1 bit hold no JPEG: leave out --quality.");
  CHECK(Refusal("scan -o a.png --quality 40").starts_with("65 "));
  CHECK(Refusal("scan -o a.jpg --quality 0").starts_with("64 "));
  CHECK(Refusal("scan -o a.jpg --quality 101").starts_with("64 "));
}

}  // namespace
