#include <doctest/doctest.h>

#include "pmscan/scan/scan_request.h"
#include "pmscan/scan/scan_source.h"
#include "tests/pmscan/refusal.h"

namespace {

using pmscan::FindScanMode;
using pmscan::FindScanSource;
using pmscan::ScanRequest;
using pmscan::tests::CodeOf;

struct Scanner {
  pmddb832::ScannerSettings settings{};
  Scanner() {
    settings.scanInfoVariant = 3;
    settings.docFeedOption = 0;
    settings.bedWidth = 850;
    settings.bedHeight = 1170;
    settings.optionWidth = 850;
    settings.optionHeight = 1400;
    settings.minResolutionCopy = 50;
    settings.maxResolutionCopy = 1200;
  }
};

ScanRequest RequestOf(const char* mode, std::uint32_t width) {
  return {*FindScanMode(mode), 300, {30, 45, width, 100}, false, false};
}

TEST_CASE("pmscan: a source that is fitted has the size that the scanner told") {
  const Scanner scanner;
  CHECK(pmscan::RequireFitted(*FindScanSource("flatbed"), scanner.settings).height == 1170);
  CHECK(pmscan::RequireFitted(*FindScanSource("feeder"), scanner.settings).height == 1400);
}

TEST_CASE("pmscan: a source that is not fitted is refused with those that are") {
  const Scanner scanner;
  CHECK_THROWS_WITH(pmscan::RequireFitted(*FindScanSource("transparency"), scanner.settings),
                    "This scanner has no transparency unit; --source can be: flatbed, feeder.");
}

TEST_CASE("pmscan: a source of unknown size is refused") {
  Scanner scanner;
  scanner.settings.bedWidth = 0;
  CHECK_THROWS_AS(pmscan::RequireFitted(*FindScanSource("flatbed"), scanner.settings),
                  pmscan::Failure);
}

TEST_CASE("pmscan: a resolution is one between the lowest and the highest that the scanner told") {
  const Scanner scanner;
  for (const std::uint32_t good : {50u, 300u, 1200u}) {
    CHECK(CodeOf([&] { pmscan::RequireResolution(good, scanner.settings); }) == 0);
  }
  for (const std::uint32_t bad : {49u, 1201u}) {
    CHECK(CodeOf([&] { pmscan::RequireResolution(bad, scanner.settings); }) ==
          pmscan::kUnsupported);
  }
}

TEST_CASE("pmscan: only scanners with standard commands have the palette") {
  Scanner scanner;
  const auto require = [&] { pmscan::RequireMode(*FindScanMode("palette"), scanner.settings); };
  CHECK(CodeOf(require) == pmscan::kUnsupported);
  scanner.settings.scanInfoVariant = 2;
  CHECK(CodeOf(require) == 0);
}

TEST_CASE("pmscan: a transfer block of the extended commands holds two lines") {
  const Scanner scanner;
  const auto refusal = [&](const char* mode, std::uint32_t width) {
    return CodeOf([&] { pmscan::RequireTransferable(RequestOf(mode, width), scanner.settings); });
  };
  CHECK(refusal("deep-colour", 5432) == 0);  // 2 x 32592 bytes
  CHECK(refusal("deep-colour", 5433) == pmscan::kTooLarge);
  CHECK(refusal("grey", 32632) == 0);
  CHECK(refusal("grey", 32633) == pmscan::kTooLarge);
  CHECK(refusal("lineart", 32752) == 0);
}

TEST_CASE("pmscan: the transfer blocks of the standard commands are the module's business") {
  Scanner scanner;
  scanner.settings.scanInfoVariant = 2;
  CHECK(CodeOf([&] {
          pmscan::RequireTransferable(RequestOf("deep-colour", 6000), scanner.settings);
        }) == 0);
}

TEST_CASE("pmscan: a request is written into the record, its origin in hundredths of an inch") {
  Scanner scanner;
  ScanRequest request = RequestOf("deep-grey", 600);
  request.isMirrored = true;
  pmscan::DescribeScan(request, scanner.settings);
  CHECK(scanner.settings.pixelType == 8);
  CHECK(scanner.settings.zoom == 100);
  CHECK(scanner.settings.resolution == 300);
  CHECK(scanner.settings.originX == 10.0);
  CHECK(scanner.settings.originY == 15.0);
  CHECK(scanner.settings.areaWidthPx == 600);
  CHECK(scanner.settings.areaHeightPx == 100);
  CHECK(scanner.settings.areaLeftPx == 30);
  CHECK(scanner.settings.areaTopPx == 45);
  CHECK(scanner.settings.mirrorImage == 1);
  CHECK(scanner.settings.invertMono == 0);
  CHECK(scanner.settings.thresholdT == 0xFFFF);
}

TEST_CASE("pmscan: an origin comes back as the same pixel at every resolution") {
  for (std::uint32_t dotsPerInch = 1; dotsPerInch <= 4800; dotsPerInch += 7) {
    for (const std::uint32_t pixel : {0u, 1u, 2u, 1001u, 32751u}) {
      Scanner scanner;
      ScanRequest request{*FindScanMode("grey"), dotsPerInch, {pixel, pixel, 8, 8}, false, false};
      pmscan::DescribeScan(request, scanner.settings);
      REQUIRE(static_cast<std::uint32_t>((scanner.settings.originX * dotsPerInch + 50.0) / 100.0) ==
              pixel);
    }
  }
}

}  // namespace
