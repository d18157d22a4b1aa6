#include <doctest/doctest.h>

#include <cstring>

#include "pmscan/scan/scan_plan.h"
#include "tests/pmscan/refusal.h"

namespace {

using pmscan::LengthUnit;
using pmscan::ScanPlan;

// A flatbed that is 637 pixels wide at 75 dots per inch, and a user who scans it.
struct Desk {
  Desk() {
    settings.scanInfoVariant = 2;
    settings.commandLevel = 8;
    settings.docFeedOption = 2;
    settings.bedWidth = 850;
    settings.bedHeight = 1170;
    settings.minResolutionCopy = 50;
    settings.maxResolutionCopy = 1200;
    options.mode = *pmscan::FindScanMode("grey");
    options.source = *pmscan::FindScanSource("flatbed");
    options.dotsPerInch = 75;
  }

  void Want(double left, double width) {
    constexpr LengthUnit kPixel = LengthUnit::kPixel;
    options.area = {{left, kPixel}, {0, kPixel}, {width, kPixel}, {10, kPixel}};
  }
  ScanPlan Plan() const { return PlanScan(options, settings); }

  pmddb832::ScannerSettings settings{};
  pmscan::Options options;
};

TEST_CASE_FIXTURE(Desk, "pmscan: the module is asked for whole groups of eight pixels") {
  Want(10, 21);
  const ScanPlan plan = Plan();
  CHECK(plan.asked.area.left == 10);
  CHECK(plan.asked.area.width == 24);
  CHECK(plan.picture.area.width == 21);
  CHECK(plan.window.skipped == 0);
  CHECK(plan.window.width == 21);
}

TEST_CASE_FIXTURE(Desk, "pmscan: at the edge of the bed the groups begin further left") {
  Want(630, 7);
  const ScanPlan plan = Plan();
  CHECK(plan.asked.area.left == 629);
  CHECK(plan.asked.area.width == 8);
  CHECK(plan.picture.area.left == 630);
  CHECK(plan.window.skipped == 1);
}

TEST_CASE_FIXTURE(Desk, "pmscan: a picture as wide as the bed ends with its last whole group") {
  const ScanPlan plan = Plan();
  CHECK(plan.asked.area.width == 632);
  CHECK(plan.picture.area.width == 632);
  CHECK(plan.window.width == 632);
  CHECK(plan.missing == 5);
}

TEST_CASE_FIXTURE(Desk, "pmscan: a mirrored line begins with what lies behind the picture") {
  Want(10, 21);
  options.isMirrored = true;
  const ScanPlan plan = Plan();
  CHECK(plan.asked.isMirrored);
  CHECK(plan.window.skipped == 3);
  CHECK_FALSE(plan.window.isFlipped);
}

TEST_CASE_FIXTURE(Desk, "pmscan: lines are flipped where the scanner has no mirror command") {
  Want(10, 21);
  options.isMirrored = true;
  settings.commandLevel = 2;
  const ScanPlan plan = Plan();
  CHECK_FALSE(plan.asked.isMirrored);
  CHECK(plan.window.skipped == 0);
  CHECK(plan.window.isFlipped);
}

TEST_CASE_FIXTURE(Desk, "pmscan: extended commands deliver bytes pixel by pixel, bits in groups") {
  settings.scanInfoVariant = 3;
  CHECK(Plan().picture.area.width == 637);
  options.mode = *pmscan::FindScanMode("lineart");
  CHECK(Plan().picture.area.width == 632);
  options.mode = *pmscan::FindScanMode("deep-grey");
  CHECK(Plan().picture.area.width == 637);
}

TEST_CASE_FIXTURE(Desk, "pmscan: samples have 14 bits of a product whose model is not known") {
  settings.scanInfoVariant = 3;
  options.mode = *pmscan::FindScanMode("deep-grey");
  std::memcpy(settings.productNameReply, "SCANNER RV-3100 ", 16);
  std::memcpy(settings.modelName, "ORVAN  ", 8);
  CHECK(Plan().picture.area.width == 632);
  CHECK(Plan().sampleBits == 14);
  std::memcpy(settings.modelName, "RV3100", 7);
  CHECK(Plan().picture.area.width == 637);
  CHECK(Plan().sampleBits == 12);
}

TEST_CASE_FIXTURE(Desk, "pmscan: a page that the module would centre is asked for from the edge") {
  settings.docFeedOption = 0;
  options.dotsPerInch = 50;
  constexpr LengthUnit kPixel = LengthUnit::kPixel;
  options.area = {{100, kPixel}, {0, kPixel}, {20, kPixel}, {585, kPixel}};
  const ScanPlan plan = Plan();
  CHECK(plan.asked.area.left == 0);
  CHECK(plan.asked.area.width == 120);
  CHECK(plan.window.skipped == 100);
}

// Keeps what comes.
struct Lines : pmscan::RowSink {
  void Write(std::span<const std::uint8_t> rows, std::uint32_t bytes, std::uint32_t) override {
    lineBytes = bytes;
    all.assign(rows.begin(), rows.end());
  }
  std::vector<std::uint8_t> all;
  std::uint32_t lineBytes = 0;
};

TEST_CASE("pmscan: of each line the pixels of the window pass, flipped where that is asked for") {
  const std::vector<std::uint8_t> lines{0, 1, 2, 3, 4, 5, 6, 7, 10, 11, 12, 13, 14, 15, 16, 17};
  Lines cut;
  pmscan::WindowSink({16, 1, 2, false}, cut).Write(lines, 8, 2);
  CHECK(cut.all == std::vector<std::uint8_t>{2, 3, 4, 5, 12, 13, 14, 15});
  pmscan::WindowSink({16, 1, 2, true}, cut).Write(lines, 8, 2);
  CHECK(cut.all == std::vector<std::uint8_t>{4, 5, 2, 3, 14, 15, 12, 13});
}

TEST_CASE("pmscan: of line art the bits of the window pass") {
  const std::vector<std::uint8_t> line{0b00010110, 0b11000000, 0, 0};
  Lines cut;
  pmscan::WindowSink({1, 3, 9, false}, cut).Write(line, 4, 1);
  CHECK(cut.all == std::vector<std::uint8_t>{0b10110110, 0b00000000});
  pmscan::WindowSink({1, 3, 7, true}, cut).Write(line, 4, 1);
  CHECK(cut.all == std::vector<std::uint8_t>{0b11011010});
}

}  // namespace
