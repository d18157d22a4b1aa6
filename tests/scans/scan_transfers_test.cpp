#include <doctest/doctest.h>

#include <memory>
#include <string>

#include "simulator/catalog/catalog.h"
#include "tests/scans/faulty_device.h"
#include "tests/scans/whole_scan.h"

using namespace pmddb832;
using namespace pmddb832::tests;

namespace {

// A scan of a whole letter page from the bed of a simulated scanner.
struct Page {
  const char* family;
  std::uint32_t pixelType;
  std::uint16_t dotsPerInch;
};

// Device reads and writes of the page, from the set-up on.
std::size_t CountTransfers(const Page& page, std::uint32_t bufferBytes = 0) {
  const std::unique_ptr<simulator::Scanner> scanner =
      simulator::MakeScanner(page.family, PictureFor(page.pixelType, 8, 8));
  FaultyDevice counter(*scanner, std::nullopt);
  WholeScan host(*scanner);
  host.settings.deviceInterface = &counter;
  host.settings.pixelType = page.pixelType;
  host.settings.resolution = page.dotsPerInch;
  REQUIRE(host.Open());
  const std::size_t opening = counter.Transfers().size();
  host.SetArea(0, 0, page.dotsPerInch * 17u / 2u, page.dotsPerInch * 11u);
  const ScannedImage image = host.Acquire(page.pixelType, bufferBytes);
  CHECK(image.error == 0);
  CHECK(image.rows.size() == page.dotsPerInch * 11u);
  CHECK(Violations(*scanner) == "");
  return counter.Transfers().size() - opening;
}

}  // namespace

TEST_CASE("a letter page takes 2n + 7 transfers of the extended set for n blocks") {
  CHECK(CountTransfers({"extended", 0, 300}) == 41);
  CHECK(CountTransfers({"extended", 2, 300}) == 283);  // 24 lines of 2550 bytes a block
  CHECK(CountTransfers({"extended", 5, 300}) == 833);
  CHECK(CountTransfers({"extended", 2, 600}) == 1107);  // 12 lines of 5100 bytes
}

TEST_CASE("a letter page takes 3n + 61 transfers of the standard set for n blocks") {
  CHECK(CountTransfers({"standard", 2, 300}) == 457);  // 25 lines of 2550 bytes a block
  CHECK(CountTransfers({"standard", 5, 300}) == 1300);
}

TEST_CASE("a small host buffer makes no transfer more in the extended set") {
  CHECK(CountTransfers({"extended", 2, 300}, 2550 * 7 + 1) == 283);
}

// 6 lines of 2552 bytes fit into the 17851, so there are 550 blocks.
TEST_CASE("a host buffer below 65280 bytes is the block of the standard set") {
  CHECK(CountTransfers({"standard", 2, 300}, 2550 * 7 + 1) == 1711);
}
