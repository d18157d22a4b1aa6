#include <functional>
#include <iterator>
#include <memory>
#include <utility>

#include "standard/std_scan_cmd.h"
#include "tests/standard/standard_fixture.h"

// Calls of the host out of its own device, which overtake the call that made the transfer.

namespace pmddb832::tests::standard {
namespace {

constexpr std::uint32_t kAckBytes = 1;
constexpr std::uint32_t kHeaderBytes = 6;
constexpr std::uint32_t kLineBytes = 16;
constexpr std::uint32_t kStatusBytes = 11;

struct OvertakenScanner : StandardScanner {
  OvertakenScanner() : StandardScanner("B4") {}

  void During(std::uint32_t readBytes, std::function<void()> action) {
    device.duringReadOf = readBytes;
    device.duringRead = std::move(action);
  }

  // The next scan, which was set up out of the device, is started and delivered as ever.
  void CheckNextScan() {
    AcceptUpload(UploadOf("B4"));
    device.ExpectBlock(0x1B, 'd', {0x04});
    AnswerStart(BlockHeader(0x20, 16, 4));
    device.Reply(Fill(64, 5));
    CHECK(Acquire(64).Rows(16) == "05 05 05 05");
  }
};

TEST_CASE_FIXTURE(OvertakenScanner,
                  "standard: a set-up out of the device that sends the first header") {
  StartScan(BlockHeader(0x00, 16, 1));
  During(kHeaderBytes, [this] { InitAcquire(1); });
  CHECK(Acquire(64).recordBytes == kUnwrittenBand);
  CHECK(PMGetScanError() == 9);
  CHECK(progress.empty());
  CheckNextScan();
}

TEST_CASE_FIXTURE(OvertakenScanner, "standard: a block that a set-up overtakes is not answered") {
  StartScan(BlockHeader(0x00, 16, 1));
  During(kLineBytes, [this] { InitAcquire(1); });
  device.Reply(Fill(16, 1));
  CHECK(Acquire(64).image == Fill(64, 0xA5));
  CHECK(PMGetScanError() == 9);
  CheckNextScan();
}

TEST_CASE_FIXTURE(OvertakenScanner,
                  "standard: a set-up out of the device that acknowledges a cancel") {
  DeliverFirstLine();
  During(kAckBytes, [this] { InitAcquire(1); });
  device.Reply(BlockHeader(0x00, 16, 1)).Reply(Fill(16, 2)).Expect({0x18}).Reply({0x06});
  CHECK(AbortSet() == 0);
  CHECK(PMGetScanError() == 9);
  CheckNextScan();
}

TEST_CASE_FIXTURE(OvertakenScanner,
                  "standard: a close out of the device that acknowledges a cancel") {
  DeliverFirstLine();
  During(kAckBytes, PMCloseScanner);
  device.Reply(BlockHeader(0x00, 16, 1)).Reply(Fill(16, 2)).Expect({0x18}).Reply({0x06});
  CHECK(AbortSet() == 0);
  CHECK(PMGetScanError() == 9);
}

TEST_CASE_FIXTURE(OvertakenScanner,
                  "standard: a close out of the device that sends a block is code 9") {
  StartScan(BlockHeader(0x00, 16, 1));
  During(kLineBytes, PMCloseScanner);
  device.Reply(Fill(16, 1));
  CheckAcquireFails(64, 9);
}

TEST_CASE_FIXTURE(OvertakenScanner,
                  "standard: a close out of the device that sends a header is code 9") {
  DeliverFirstLine();
  During(kHeaderBytes, PMCloseScanner);
  device.Reply(BlockHeader(0x00, 16, 1));
  CheckAcquireFails(16, 9);
}

TEST_CASE_FIXTURE(OvertakenScanner, "standard: an abort behind a close fails with code 9") {
  DeliverFirstLine();
  PMCloseScanner();
  CHECK(AbortSet() == 0);
  CHECK(PMGetScanError() == 9);
}

TEST_CASE_FIXTURE(
    OvertakenScanner,
    "standard: a further open out of a call within a call takes the channel of both") {
  // A further open leaves it behind.
  const std::unique_ptr<StdScanCmd> replaced(static_cast<StdScanCmd*>(currentCommandSet));
  InitAcquire(1);
  AcceptUpload(UploadOf("B4"));
  device.ExpectBlock(0x1B, 'd', {0x04});
  AnswerStatus();  // of the acquisition
  AnswerStatus();  // of the question within it
  During(kStatusBytes, [this] {
    device.duringRead = [this] { CHECK(Open() == 1); };
    PMGetOptionStatus(0);
  });
  CHECK(Acquire(64).record.status == kFailed);
}

TEST_CASE("standard: settings that the host takes away amid a band of any type end the next one") {
  const char* const firstBytes[] = {"5A", "A5", "5A", "A5", "2B", "5A", "05", "5A", "5A"};
  for (std::uint32_t type = 0; type < std::size(firstBytes); ++type) {
    CAPTURE(type);
    OpenB4 scanner;
    scanner.settings.pixelType = type;
    scanner.StartWithoutUpload(BlockHeader(0x20, 96, 4));
    scanner.device.Reply(Fill(384, 0x5A));
    ScriptedScanner::duringProgress = [] { PMSetScannerHardware(nullptr); };
    const Band band = scanner.Acquire(std::size_t{scanner.setup.lineBytes} * 4, 3);
    CHECK(band.record.status == kGoOn);
    CHECK(band.record.done == 1);
    CHECK(Hex({band.image[0]}) == firstBytes[type]);
    CHECK(scanner.Acquire(64).image == Fill(64, 0xA5));
  }
}

}  // namespace
}  // namespace pmddb832::tests::standard
