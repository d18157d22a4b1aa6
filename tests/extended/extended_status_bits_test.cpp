#include "tests/extended/extended_fixture.h"

// Each bit of a status byte counts alone: with it alone set, and with all others.

namespace pmddb832::tests::extended {
namespace {

constexpr std::uint32_t kFeeder = 0;
constexpr std::uint32_t kUnit = 1;
constexpr std::uint32_t kFlatbed = 2;

std::uint32_t OptionStatus(std::uint32_t source, const Bytes& status) {
  OpenExtended scanner;
  scanner.AnswerStatus(status);
  return PMGetOptionStatus(source);
}

// The option unit that an open finds.
std::uint32_t OptionOf(const Bytes& status) {
  ExtendedScanner scanner;
  REQUIRE(scanner.Open(Identity(), status) == 1);
  return scanner.settings.docFeedOption;
}

// What an open makes of a feeder's capabilities: bits 5 and 4, and the extra flag.
Bytes Capabilities(std::uint8_t flags) {
  ExtendedScanner scanner;
  scanner.OpenFeeder(flags);
  const ScannerSettings& settings = scanner.settings;
  return {settings.mainStatusBit5, settings.mainStatusBit4,
          static_cast<std::uint8_t>(settings.feederStatusExtra)};
}

TEST_CASE("a feeder's conditions count with bit 6 of its status alone") {
  CHECK(OptionStatus(kFeeder, Status(0, 0xBF)) == 0);
  CHECK(OptionStatus(kFeeder, Status(0, 0x4E)) == 15);
}

TEST_CASE("a feeder is jammed with bit 1, open with bit 2, empty with bit 3 alone") {
  CHECK(OptionStatus(kFeeder, Status(0, 0xFF)) == 15);
  CHECK(OptionStatus(kFeeder, Status(0, 0xFD)) == 14);
  CHECK(OptionStatus(kFeeder, Status(0, 0xF9)) == 13);
  CHECK(OptionStatus(kFeeder, Status(0, 0xF1)) == 0);
}

TEST_CASE("a transparency unit's condition is bit 1 with bit 6 of its status alone") {
  CHECK(OptionStatus(kUnit, Status(0, 0, 0xBF)) == 0);
  CHECK(OptionStatus(kUnit, Status(0, 0, 0xFD)) == 0);
  CHECK(OptionStatus(kUnit, Status(0, 0, 0x42)) == 15);
}

TEST_CASE("a scanner is not ready with bit 6 of the main status alone, in error with bit 7") {
  CHECK(OptionStatus(kFlatbed, Status(0xBF)) == 22);
  CHECK(OptionStatus(kFlatbed, Status(0x3F)) == 0);
  CHECK(OptionStatus(kFlatbed, Status(0x40)) == 31);
  CHECK(OptionStatus(kFlatbed, Status(0x80)) == 22);
}

TEST_CASE("an option unit is fitted with bit 7 of its status alone") {
  CHECK(OptionOf(Status(0, 0x7F, 0x7F)) == kFlatbed);
  CHECK(OptionOf(Status(0, 0x7F, 0x80)) == kUnit);
  CHECK(OptionOf(Status(0, 0x80, 0x7F)) == kFeeder);
}

TEST_CASE("a feeder's capabilities are bits 5, 4 and 3 alone, the others with bit 5 only") {
  CHECK(Capabilities(0xFF) == Bytes{1, 1, 1});
  CHECK(Capabilities(0xDF) == Bytes{0, 0, 0});
  CHECK(Capabilities(0xEF) == Bytes{1, 0, 1});
  CHECK(Capabilities(0xF7) == Bytes{1, 1, 0});
  CHECK(Capabilities(0x20) == Bytes{1, 0, 0});
  CHECK(Capabilities(0x30) == Bytes{1, 1, 0});
  CHECK(Capabilities(0x28) == Bytes{1, 0, 1});
}

TEST_CASE_FIXTURE(OpenExtended, "a start is refused for bits 7 and 1 of the main status alone") {
  InitAcquire();
  AcceptParameters();
  AnswerStatus(Status(0x7F));
  CheckAcquireFails(64, 43);
  AcceptParameters();
  AnswerStart(Header(0, 0, 64));
  SendLastBlock(Fill(64, 1));
  CHECK(Acquire(64).record.done == 1);
}

TEST_CASE_FIXTURE(OpenExtended, "a header asks for a second start with bit 7 of its status alone") {
  StartScan(ParameterBlock(), With(Header(0, 0, 64), 1, {0x80}));
  AnswerStart(With(Header(0, 0, 64), 1, {0x7F}));
  SendLastBlock(Fill(64, 1));
  CHECK(Acquire(64).record.done == 1);
}

TEST_CASE_FIXTURE(OpenExtended, "a block failed with bit 7 of its status alone") {
  StartScan(ParameterBlock(), Header(0, 0, 64));
  device.Reply(Fill(64, 1) + Bytes{0x80});
  AnswerStatus();
  CheckAcquireFails(64, 0);
  device.Reply(Fill(64, 1) + Bytes{0x7F});
  CHECK(Acquire(64).record.done == 1);
}

}  // namespace
}  // namespace pmddb832::tests::extended
