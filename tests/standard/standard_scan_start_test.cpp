#include <array>

#include "tests/standard/standard_fixture.h"

// What happens between PMAcquireImage and the first block: option unit, lines per block, warm-up,
// ESC "G", the receive buffer.

namespace pmddb832::tests::standard {
namespace {

// A scan of the selected option unit, up to the answer to the status query.
std::uint32_t StartOnUnit(std::uint8_t installed, const Bytes& status) {
  const bool feeder = installed == 1;
  StandardScanner scanner("B4", feeder ? Status(0, 0x80) : Status(0, 0, 0x80));
  scanner.settings.scanSource = 1;
  scanner.InitAcquire();
  scanner.AcceptUpload("e 01, " + UploadOf("B4"));
  scanner.AnswerStatus(status);
  const bool goesOn =
      feeder ? (status[1] & 0x06) == 0 || (status[1] & 0x08) != 0 : (status[6] & 0x02) == 0;
  if (goesOn) scanner.device.FailNextWrite().FailNextWrite();  // ESC d and the warm-up query
  CHECK(scanner.Acquire(64).record.status == kFailed);
  return PMGetScanError();
}
constexpr std::uint8_t kFeeder = 1;
constexpr std::uint8_t kUnit = 2;

// A scan of that width and buffer, whose lines per block are sent; it then fails.
void CheckLinesPerBlock(std::uint32_t width, std::uint32_t bufferBytes, std::uint8_t lines,
                        std::uint32_t request = kUnwritten) {
  CAPTURE(width);
  StandardScanner scanner;
  REQUIRE(scanner.Open(With(Identity(), 9, {0xFF, 0xFF})) == 1);
  scanner.settings.areaWidthPx = width;
  scanner.InitAcquire();
  const std::string area = "A 00 00 00 00 " + Hex(Short((width + 7) / 8 * 8)) + " 04 00";
  scanner.AcceptUpload(UploadOf("B4", area));
  scanner.device.ExpectBlock(0x1B, 'd', {lines}).FailNextWrite();
  scanner.Acquire(bufferBytes, request);
}

// A scan whose status is answered by `status` before it can start.
std::uint32_t WarmUp(const Bytes& status) {
  StandardScanner scanner("B4");
  scanner.InitAcquire();
  scanner.AcceptUpload(UploadOf("B4"));
  scanner.device.ExpectBlock(0x1B, 'd', {0x04});
  scanner.AnswerStatus(status);
  CHECK(scanner.Acquire(64).record.status == kFailed);
  return PMGetScanError();
}

TEST_CASE_FIXTURE(OpenB4,
                  "standard: a scan starts with settings, lines per block, status and ESC G") {
  InitAcquire(1);
  AcceptUpload(UploadOf("B4"));
  device.Expect({0x1B, 0x64}).Reply({0x06}).Expect({0x04}).Reply({0x06});
  device.Expect({0x1B, 0x66}).Reply({0x02, 0x00, 0x0B, 0x00}).Reply(Status());
  device.Expect({0x1B, 0x47}).Reply({0x02, 0x20, 0x10, 0x00, 0x04, 0x00});
  device.Reply(Ramp(0, 64));
  CHECK(Acquire(64).Hex() == Hex(Ramp(0, 64)));
}

TEST_CASE("standard: a jammed transparency unit keeps the scan from starting with code 15") {
  CHECK(StartOnUnit(kUnit, Status(0, 0, 0x02)) == 15);
  CHECK(StartOnUnit(kUnit, Status(0, 0, 0x0E)) == 15);     // neither empty nor open is known of one
  CHECK(StartOnUnit(kUnit, Status(0, 0x06, 0xFD)) == 22);  // goes on
}

TEST_CASE(
    "standard: an open or jammed feeder keeps the scan from starting, an empty one does not") {
  CHECK(StartOnUnit(kFeeder, Status(0, 0x06)) == 14);
  CHECK(StartOnUnit(kFeeder, Status(0, 0x02)) == 15);
  CHECK(StartOnUnit(kFeeder, Status(0, 0x0E)) == 22);
  CHECK(StartOnUnit(kFeeder, Status(0, 0xF1, 0x02)) == 22);
}

TEST_CASE("standard: an option unit that does not tell its status is code 7") {
  for (const Bytes& fitted : {Status(0, 0x80), Status(0, 0, 0x80)}) {
    StandardScanner scanner("B4", fitted);
    scanner.settings.scanSource = 1;
    scanner.InitAcquire();
    scanner.AcceptUpload("e 01, " + UploadOf("B4"));
    scanner.device.Expect({0x1B, 0x66}).FailNextRead();
    scanner.CheckAcquireFails(64, 7);
  }
}

TEST_CASE("standard: lines per block are those that the receive buffer holds") {
  CheckLinesPerBlock(16, 64, 4);
  CheckLinesPerBlock(16, 79, 4);
  CheckLinesPerBlock(16, 1000, 62);
  CheckLinesPerBlock(2000, 65280, 32);  // (65280 - 10) / 2000
}

TEST_CASE("standard: raw lines count in groups of 8 pixels") {
  CheckLinesPerBlock(201, 2000, 9);  // 208 bytes each
}

TEST_CASE("standard: at most 255 lines per block are asked for") {
  CheckLinesPerBlock(16, 4080, 255);
  CheckLinesPerBlock(16, 65280, 255);
}

TEST_CASE("standard: a buffer smaller than a raw line receives one line") {
  CheckLinesPerBlock(201, 204, 1);
  CheckLinesPerBlock(201, 100, 1);
}

TEST_CASE("standard: with status 3 the host asks for a receive buffer of 65280 bytes") {
  CheckLinesPerBlock(2000, 2000, 32, 3);
}

TEST_CASE_FIXTURE(StandardScanner, "standard: a line beyond the receive buffer is code 16") {
  REQUIRE(Open(With(Identity("B8"), 9, {0xFF, 0xFF})) == 1);
  level = "B8";
  settings.areaWidthPx = 65272;
  InitAcquire();
  const std::string upload = UploadOf("B8", "-A");
  AcceptUpload(upload);  // code 35
  CheckAcquireFails(65280, 35);
  device.Expect({0x1B, 0x46}).FailNextRead();  // without an upload the lines are counted
  CheckAcquireFails(65280, 16);
}

TEST_CASE_FIXTURE(OpenB4,
                  "standard: lines per block that are not acknowledged do not end the start") {
  InitAcquire();
  AcceptUpload(UploadOf("B4"));
  device.Expect({0x1B, 0x64}).Reply({kNak}).FailNextWrite();
  Acquire(64);
  CHECK(PMGetScanError() == 22);
}

TEST_CASE("standard: a fatal error before the start is code 22, warming up is code 43") {
  CHECK(WarmUp(Status(0x80)) == 22);
  CHECK(WarmUp(Status(0x82)) == 22);
  CHECK(WarmUp(Status(0x02)) == 43);
}

TEST_CASE_FIXTURE(OpenB4, "standard: a scanner that was warming up is started by the next call") {
  InitAcquire(1);
  AcceptUpload(UploadOf("B4"));
  device.ExpectBlock(0x1B, 'd', {0x04});
  AnswerStatus(Status(0x02));
  Acquire(64);
  AcceptUpload(UploadOf("B4"));
  device.ExpectBlock(0x1B, 'd', {0x04});
  AnswerStart(BlockHeader(0x20, 16, 4));
  device.Reply(Ramp(0, 64));
  CHECK(Acquire(64).record.status == kGoOn);
  CHECK(PMGetScanError() == 0);
}

TEST_CASE_FIXTURE(OpenB4, "standard: the progress window is repainted before ESC G") {
  int window = 0;
  settings.progressWindow = &window;
  ScanPage();
  CHECK(system.repaintedWindows == std::vector<void*>{&window});
}

TEST_CASE("standard: an ESC G that is not sent or answered is code 9") {
  for (const bool sent : {false, true}) {
    StandardScanner scanner("B4");
    scanner.InitAcquire();
    scanner.AcceptUpload(UploadOf("B4"));
    scanner.device.ExpectBlock(0x1B, 'd', {0x04});
    scanner.AnswerStatus();
    if (sent) scanner.device.Expect({0x1B, 0x47}).FailNextRead();
    if (!sent) scanner.device.FailNextWrite();
    scanner.CheckAcquireFails(64, 9);
  }
}

TEST_CASE_FIXTURE(OpenB4, "standard: the first header need not begin with STX") {
  StartScan({0x15, 0x20, 0x10, 0x00, 0x04, 0x00});
  device.Reply(Ramp(0, 64));
  CHECK(Acquire(64).record.status == kGoOn);
}

TEST_CASE_FIXTURE(OpenB4,
                  "standard: an error in the first header asks once more, with its own header") {
  int window = 0;
  settings.progressWindow = &window;
  StartScan(BlockHeader(0x80, 99, 99));
  AnswerStatus();
  device.Expect({0x1B, 0x47});
  SendLastBlock(BlockHeader(0xA0, 16, 4), Ramp(0, 64));  // an error now is not looked at
  CHECK(Acquire(64).Hex() == Hex(Ramp(0, 64)));
  CHECK(system.repaintedWindows.size() == 2);
}

TEST_CASE_FIXTURE(OpenB4, "standard: a header that no block followed is not the next scan's") {
  StartScan(BlockHeader(0x20, 16, 4));
  duringProgress = [this] { InitAcquire(1); };
  CheckAcquireFails(64, 9);
  AcceptUpload(UploadOf("B4"));
  device.ExpectBlock(0x1B, 'd', {0x04});
  AnswerStart(BlockHeader(0x80, 99, 99));
  AnswerStatus();
  device.Expect({0x1B, 0x47});
  SendLastBlock(BlockHeader(0x20, 16, 4), Ramp(0, 64));
  CHECK(Acquire(64).Hex() == Hex(Ramp(0, 64)));
}

// The scanner answers 02 20 10 00 55 66, and the line 01 02 ... behind it.
TEST_CASE_FIXTURE(OpenB3,
                  "standard: in line mode the answer to a second start is the first line's header "
                  "and two bytes of that line") {
  StartScan(BlockHeader(0x80, 99, 99), 0);
  device.Expect({0x1B, 0x47});
  SendLastBlock({0x02, 0x20, 0x10, 0x00}, Bytes{0x55, 0x66} + Ramp(1, 14));
  CHECK(Acquire(16).image == Bytes{0x55, 0x66} + Ramp(1, 14));
}

TEST_CASE_FIXTURE(OpenB4, "standard: the second start needs a ready scanner too") {
  StartScan(BlockHeader(0x80, 0, 0));
  AnswerStatus(Status(0x02));
  CheckAcquireFails(64, 43);
}

TEST_CASE_FIXTURE(
    OpenB4, "standard: the receive buffer is made anew for each scan and given back at the close") {
  ScanPage();
  CHECK(system.heapBlocks == 1);
  ScanPage();
  CHECK(system.heapBlocks == 1);
  PMCloseScanner();
  CHECK(system.heapBlocks == 0);
}

TEST_CASE_FIXTURE(OpenB4, "standard: without memory for the receive buffer nothing is sent") {
  InitAcquire(1);
  system.heapAllocationsLeft = 0;
  CHECK(Acquire(64).record.status == kFailed);
  CHECK(Acquire(64, 3).record.status == kFailed);
  system.heapAllocationsLeft.reset();
  CHECK(ScanPage().record.status == kGoOn);
}

TEST_CASE("standard: no model waits before its first block") {
  for (const char* model : {"QM43000", "QM41000"}) {
    StandardScanner scanner("B4");
    std::copy_n(model, 8, scanner.settings.modelName);
    for (const auto& [platformId, major, minor] :
         {std::array{2u, 5u, 1u}, std::array{1u, 4u, 10u}, std::array{2u, 4u, 0u}}) {
      scanner.system.version = platform::OperatingSystemVersion{platformId, major, minor};
      scanner.ScanPage();
    }
    CHECK(scanner.system.sleptMilliseconds == 0);
  }
}

TEST_CASE("standard: no model waits at a high resolution either, from flatbed or unit") {
  for (const char* model : {"QM43000", "QM41000", "QM8700\0"}) {
    for (const std::uint8_t source : Bytes{0, 1}) {
      StandardScanner scanner("B4", Status(0, 0, 0x80));
      std::copy_n(model, 8, scanner.settings.modelName);
      scanner.settings.resolution = 900;
      scanner.settings.scanSource = source;
      scanner.InitAcquire(1);
      scanner.device.Expect({0x1B, 0x46}).FailNextRead();  // no upload: not what is tested here
      if (source != 0) scanner.AnswerStatus();
      scanner.device.FailNextWrite();  // ESC d likewise
      scanner.AnswerStart(BlockHeader(0x20, 16, 4));
      scanner.device.Reply(Ramp(0, 64));
      CHECK(scanner.Acquire(64).record.status == kGoOn);
      CHECK(scanner.system.sleptMilliseconds == 0);
    }
  }
}

}  // namespace
}  // namespace pmddb832::tests::standard
