#include <functional>
#include <utility>

#include "tests/extended/extended_fixture.h"

// Calls of the host out of its own device, which overtake the call that made the transfer.

namespace pmddb832::tests::extended {
namespace {

constexpr std::uint32_t kAckBytes = 1;
constexpr std::uint32_t kHeaderBytes = 14;
constexpr std::uint32_t kStatusBytes = 16;
constexpr std::uint32_t kFullBlockBytes = 64001;  // four wide lines and the status byte

// A scan of eight wide lines, whose first block is due.
struct WideScanner : ExtendedScanner {
  WideScanner() {
    REQUIRE(Open() == 1);
    parameters = AskForWideLines(8);
    StartScan(parameters, Header(64000, 9, 0), 1);
  }

  void During(std::uint32_t readBytes, std::function<void()> action) {
    device.duringReadOf = readBytes;
    device.duringRead = std::move(action);
  }

  // The next scan is started, and delivered, as ever.
  void CheckNextScan() {
    AcceptParameters(parameters);
    AnswerStart(Header(64000, 9, 0));
    SendBlock(Fill(64000, 5));
    CHECK(Acquire(64000).Rows(16000) == "05 05 05 05");
  }

  Bytes parameters;
};

TEST_CASE_FIXTURE(WideScanner,
                  "a set-up out of the device that sends the header is the next scan's") {
  During(kHeaderBytes, [this] { InitAcquire(1); });
  CHECK(Acquire(64000).recordBytes == kUnwrittenBand);
  CHECK(PMGetScanError() == 9);
  CHECK(progress.empty());
  CheckNextScan();
}

TEST_CASE_FIXTURE(WideScanner, "a block that a set-up overtakes is not answered") {
  During(kFullBlockBytes, [this] { InitAcquire(1); });
  device.Reply(Fill(64000, 1) + Bytes{0x00});
  CHECK(Acquire(64000).Rows(16000) == "A5 A5 A5 A5");
  CHECK(PMGetScanError() == 9);
  CheckNextScan();
}

TEST_CASE_FIXTURE(WideScanner, "of a block that a set-up overtakes no cause is asked for") {
  During(kFullBlockBytes, [this] { InitAcquire(1); });
  device.Reply(Fill(64000, 1) + Bytes{0x80});
  CheckAcquireFails(64000, 9);
  CheckNextScan();
}

TEST_CASE_FIXTURE(WideScanner, "a set-up out of the device that acknowledges a cancel goes on") {
  SendBlock(Fill(64000, 1));
  REQUIRE(Acquire(64000).record.lines == 4);
  During(kAckBytes, [this] { InitAcquire(1); });
  device.Reply(Fill(64000, 2) + Bytes{0x00}).Expect({0x18}).Reply({0x06});
  CHECK(AbortSet() == 0);
  CHECK(PMGetScanError() == 9);
  CheckNextScan();
}

TEST_CASE_FIXTURE(WideScanner, "a close out of the device that acknowledges a cancel fails it") {
  SendBlock(Fill(64000, 1));
  REQUIRE(Acquire(64000).record.lines == 4);
  During(kAckBytes, PMCloseScanner);
  device.Reply(Fill(64000, 2) + Bytes{0x00}).Expect({0x18}).Reply({0x06});
  CHECK(AbortSet() == 0);
  CHECK(PMGetScanError() == 9);
}

TEST_CASE_FIXTURE(OpenExtended, "a transfer that another call completed stays complete") {
  InitAcquire(1);
  AcceptParameters();
  device.duringReadOf = kStatusBytes;
  device.duringRead = [this] { CHECK(Acquire(64).Rows(16) == "01 01 01 01"); };
  AnswerStatus();  // of the outer call, and behind it the whole inner one
  AcceptParameters();
  AnswerStart(Header(0, 0, 64));
  SendLastBlock(Fill(64, 1));
  device.Expect({0x1C, 0x47}).Reply(Header(0, 0, 64));
  const Band band = Acquire(64);
  CHECK(band.record.lines == 0);
  CHECK(band.record.done == 1);
  PMAbortScan();  // sends nothing
  CHECK(PMGetScanError() == 0);
}

TEST_CASE_FIXTURE(OpenExtended,
                  "a further open out of a call within a call takes the channel of both") {
  const ReplacedSet replaced;
  InitAcquire(1);
  AcceptParameters();
  AnswerStatus();  // of the acquisition
  AnswerStatus();  // of the question within it
  device.duringReadOf = kStatusBytes;
  device.duringRead = [this] {
    device.duringRead = [this] { CHECK(Open() == 1); };
    PMGetOptionStatus(0);
  };
  CHECK(Acquire(64).record.status == kFailed);
}

TEST_CASE("settings that the host takes away amid a band of any type end the next one") {
  for (const std::uint32_t type : {0u, 2u, 5u, 6u, 7u, 8u}) {
    CAPTURE(type);
    OpenExtended scanner;
    scanner.settings.pixelType = type;
    scanner.InitAcquire(1);
    scanner.device.Expect({0x1C, 0x57}).Reply({0x06}).ExpectAny(64).Reply({0x06});
    scanner.AnswerStart(Header(0, 0, 384));
    scanner.SendLastBlock(Fill(384, 0x5A));
    ScriptedScanner::duringProgress = [] { PMSetScannerHardware(nullptr); };
    const Band band = scanner.Acquire(std::size_t{scanner.setup.lineBytes} * 4);
    CHECK(band.record.status == kGoOn);
    CHECK(band.record.done == 1);
    CHECK(band.image[0] == (type == 6 ? 0x05 : 0x5A));
    CHECK(scanner.Acquire(64).image == Fill(64, 0xA5));
  }
}

}  // namespace
}  // namespace pmddb832::tests::extended
