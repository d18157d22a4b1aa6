#include "pmscan/pictures/picture_reader.h"

#include <doctest/doctest.h>

#include <cstdlib>

#include "pmscan/command_line/failure.h"
#include "pmscan/command_line/file_name.h"
#include "pmscan/command_line/system_services.h"
#include "pmscan/encoders/encoders.h"
#include "pmscan/report/error_codes.h"
#include "pmscan/scan/scan_mode.h"
#include "tests/pictures/sample_pictures.h"
#include "tests/pmscan/test_folder.h"

// The readers of all systems see the same pictures.

namespace {

using pmscan::tests::SamplePicture;

// A folder for originals, and what the system needs to read them.
struct Originals : pmscan::tests::TestFolder {
  Originals() : TestFolder("pmscan_originals") {}

  simulator::Picture Read(const std::string& file) const {
    return pmscan::ReadPicture(pmscan::Utf8(path / pmscan::PathOf(file)));
  }
  // Empty when it can be read.
  std::string RefusalOf(const std::string& file) const {
    try {
      Read(file);
      return {};
    } catch (const pmscan::Failure& failure) {
      CHECK(failure.code == pmscan::kInputFile);
      return failure.what();
    }
  }

  const std::shared_ptr<void> services = pmscan::UseSystemServices();
};

TEST_CASE_FIXTURE(Originals, "pmscan: originals of every kind lie on the bed as they are") {
  for (const SamplePicture& sample : pmscan::tests::kSamplePictures) {
    CAPTURE(sample.name);
    Write("original", FileOf(sample));
    const simulator::Picture picture = Read("original");
    CHECK(picture.width == sample.width);
    CHECK(picture.height == sample.height);
    CHECK(picture.dotsPerInch == sample.dotsPerInch);
    CHECK(picture.samples == sample.samples);
  }
}

// A slope from dark blue to light yellow.
std::vector<std::uint8_t> SlopeLine(std::size_t width, std::size_t row) {
  std::vector<std::uint8_t> line;
  for (std::size_t column = 0; column < width; ++column) {
    const auto light = static_cast<std::uint8_t>(9 * column + 5 * row);
    line.insert(line.end(), {static_cast<std::uint8_t>(200 - light), light, light});
  }
  return line;
}

// Decoders of JPEG round in ways of their own.
TEST_CASE_FIXTURE(Originals, "pmscan: an original that is a JPEG file is as good as the same") {
  constexpr std::size_t kWidth = 19;
  constexpr std::size_t kHeight = 11;
  Write("slope.jpg", "");
  {
    pmscan::ByteFile file(path / "slope.jpg", "slope.jpg");
    const auto encoder = pmscan::MakeEncoder(pmscan::Container::kJpeg, file,
                                             {pmscan::PixelLayout::kBgr24, 150, 100, {}});
    encoder->BeginPage(kWidth, kHeight);
    for (std::size_t row = 0; row < kHeight; ++row) encoder->WriteLine(SlopeLine(kWidth, row));
    encoder->EndPage(kHeight);
    encoder->Finish();
    file.Close();
  }
  const simulator::Picture picture = Read("slope.jpg");
  CHECK(picture.dotsPerInch == 150);
  REQUIRE(picture.samples.size() == kWidth * kHeight * 3);
  for (std::size_t i = 0; i < picture.samples.size(); ++i) {
    const std::size_t pixel = i / 3;
    const int truth = SlopeLine(kWidth, pixel / kWidth)[pixel % kWidth * 3 + 2 - i % 3];
    CHECK(std::abs(picture.samples[i] / 257 - truth) <= 6);
  }
}

TEST_CASE_FIXTURE(Originals, "pmscan: an original may have any name") {
  const SamplePicture& sample = pmscan::tests::kSamplePictures.front();
  Write("original", FileOf(sample));
  std::filesystem::rename(path / "original", path / u8"Gr\u00FC\u00DFe \u2603.png");
  CHECK(Read("Gr\xC3\xBC\xC3\x9F"
             "e \xE2\x98\x83.png")
            .samples == sample.samples);
}

TEST_CASE_FIXTURE(Originals, "pmscan: what is no picture cannot lie on the bed") {
  Write("text.png", "Dear reader");
  Write("empty.png", "");
  CHECK(RefusalOf("text.png").find("text.png: cannot ") != std::string::npos);
  CHECK(!RefusalOf("empty.png").empty());
  CHECK(!RefusalOf("none.png").empty());
  CHECK(!RefusalOf(".").empty());
}

}  // namespace
