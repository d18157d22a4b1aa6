#include "tests/standard/standard_fixture.h"

// Each bit of a status byte counts alone: with it alone set, and with all others.

namespace pmddb832::tests::standard {
namespace {

constexpr std::uint32_t kFeeder = 0;
constexpr std::uint32_t kUnit = 1;
constexpr std::uint32_t kFlatbed = 2;

std::uint32_t OptionStatus(std::uint32_t option, const Bytes& status, std::uint8_t header = 0) {
  StandardScanner scanner("B4");
  scanner.Answer('f', {status, header});
  return PMGetOptionStatus(option);
}

// The width that a paper size query answers behind that status.
std::uint32_t PaperWidth(std::uint32_t option, const Bytes& status) {
  StandardScanner scanner("B4");
  scanner.AnswerStatus(status);
  std::uint32_t width = kUnwritten;
  std::uint32_t height = kUnwritten;
  CHECK(PMGetScanPaperSize(option, &width, &height) == 0);
  return width;
}

// The code of a start from the feeder, whose status is that. Code 22 tells that it went on.
std::uint32_t StartFromFeeder(std::uint8_t feeder) {
  OpenFeederB4 scanner;
  scanner.settings.scanSource = 1;
  scanner.InitAcquire();
  scanner.AcceptUpload("e 01, " + UploadOf("B4"));
  scanner.AnswerStatus(Status(0, feeder));
  scanner.device.Unplug();
  CHECK(scanner.Acquire(64).record.status == kFailed);
  return PMGetScanError();
}

// What an open makes of the main status of a scanner with a feeder: bits 5 and 4.
Bytes Capabilities(std::uint8_t main) {
  StandardScanner scanner("B4", Status(main, 0x80));
  CHECK(scanner.settings.feederStatusExtra == 0);
  return {scanner.settings.mainStatusBit5, scanner.settings.mainStatusBit4};
}

TEST_CASE("standard: a feeder's conditions count with bit 6 of its status alone") {
  CHECK(OptionStatus(kFeeder, Status(0, 0xBF)) == 0);
  CHECK(OptionStatus(kFeeder, Status(0, 0x4E)) == 15);
}

TEST_CASE("standard: a feeder is jammed with bit 1, open with bit 2, empty with bit 3 alone") {
  CHECK(OptionStatus(kFeeder, Status(0, 0xFF)) == 15);
  CHECK(OptionStatus(kFeeder, Status(0, 0xFD)) == 14);
  CHECK(OptionStatus(kFeeder, Status(0, 0xF9)) == 13);
  CHECK(OptionStatus(kFeeder, Status(0, 0xF1)) == 0);
}

TEST_CASE("standard: a transparency unit's condition is bit 1 with bit 6 of its status alone") {
  CHECK(OptionStatus(kUnit, Status(0, 0, 0xBF)) == 0);
  CHECK(OptionStatus(kUnit, Status(0, 0, 0xFD)) == 0);
  CHECK(OptionStatus(kUnit, Status(0, 0, 0x42)) == 15);
}

TEST_CASE("standard: a status tells of an option's page with bit 6 alone") {
  CHECK(PaperWidth(kFeeder, Status(0, 0x40)) == 800);
  CHECK(PaperWidth(kFeeder, Status(0, 0xBF)) == 0);
  CHECK(PaperWidth(kUnit, Status(0, 0, 0x40)) == 400);
  CHECK(PaperWidth(kUnit, Status(0, 0, 0xBF)) == 0);
}

TEST_CASE("standard: a start is kept back by bits 3, 2 and 1 of the feeder's status alone") {
  CHECK(StartFromFeeder(0xFF) == 22);  // empty: goes on
  CHECK(StartFromFeeder(0xF7) == 14);
  CHECK(StartFromFeeder(0xF3) == 15);
  CHECK(StartFromFeeder(0xF1) == 22);
}

TEST_CASE("standard: an option unit is fitted with bit 7 of its status alone") {
  CHECK(StandardScanner("B4", Status(0, 0x7F, 0x7F)).settings.docFeedOption == kFlatbed);
  CHECK(StandardScanner("B4", Status(0, 0x7F, 0x80)).settings.docFeedOption == kUnit);
  CHECK(StandardScanner("B4", Status(0, 0x80, 0x7F)).settings.docFeedOption == kFeeder);
}

TEST_CASE("standard: a feeder's capabilities are bits 5 and 4 of the main status alone") {
  CHECK(Capabilities(0xFF) == Bytes{1, 1});
  CHECK(Capabilities(0xDF) == Bytes{0, 0});
  CHECK(Capabilities(0xEF) == Bytes{1, 0});
  CHECK(Capabilities(0x20) == Bytes{1, 0});
  CHECK(Capabilities(0x30) == Bytes{1, 1});
}

TEST_CASE("standard: a scanner error is bit 7 of the header's or of the main status alone") {
  CHECK(OptionStatus(kFlatbed, Status(0x7F), 0x7F) == 0);
  CHECK(OptionStatus(kFlatbed, Status(0x80), 0x7F) == 22);
  CHECK(OptionStatus(kFlatbed, Status(0x7F), 0x80) == 22);
}

TEST_CASE_FIXTURE(OpenB4,
                  "standard: a start is refused for bits 7 and 1 of the main status alone") {
  InitAcquire(1);
  AcceptUpload(UploadOf("B4"));
  device.ExpectBlock(0x1B, 'd', {0x04});
  AnswerStatus(Status(0x7F));
  CheckAcquireFails(64, 43);
  AcceptUpload(UploadOf("B4"));
  device.ExpectBlock(0x1B, 'd', {0x04});
  AnswerStatus(Status(0x7D));
  device.Expect({0x1B, 0x47});
  SendLastBlock(BlockHeader(0x20, 16, 4), Fill(64, 1));
  CHECK(Acquire(64).record.done == 1);
}

TEST_CASE_FIXTURE(OpenB4, "standard: a header asks for a second start with bit 7 alone") {
  StartScan(BlockHeader(0x7F, 16, 4));
  device.Reply(Fill(64, 1));
  CHECK(Acquire(64).record.done == 1);
}

TEST_CASE_FIXTURE(OpenB4, "standard: a block is the last one with bit 5 of its status alone") {
  StartScan(BlockHeader(0x5F, 16, 1));
  SendLines(Fill(16, 1));
  SendBlock(BlockHeader(0xDF, 16, 1), Fill(16, 2));
  SendLastBlock(BlockHeader(0x20, 16, 2), Fill(32, 3));
  CHECK(Acquire(64).Rows(16) == "01 02 03 03");
}

TEST_CASE_FIXTURE(OpenB4, "standard: a block disarms with bit 6 of its status alone") {
  StartScan(BlockHeader(0x1F, 16, 1));
  SendLines(Fill(16, 1));
  SendBlock(BlockHeader(0x9F, 16, 1), Fill(16, 2));
  device.FailNextRead();
  CHECK(Acquire(64).record.status == kFailed);
  AcceptUpload(UploadOf("B4"));  // the next call starts again
  device.ExpectBlock(0x1B, 'd', {0x04});
  AnswerStart(BlockHeader(0x20, 16, 4));
  device.Reply(Fill(64, 3));
  CHECK(Acquire(64).Rows(16) == "03 03 03 03");
}

}  // namespace
}  // namespace pmddb832::tests::standard
