#include "tests/extended/extended_fixture.h"

namespace pmddb832::tests::extended {
namespace {

struct PaperSize {
  std::uint32_t result;
  std::uint32_t width = kUnwritten;
  std::uint32_t height = kUnwritten;
  bool operator==(const PaperSize&) const = default;
};

PaperSize AskPaperSize(std::uint32_t source) {
  PaperSize size{};
  size.result = PMGetScanPaperSize(source, &size.width, &size.height);
  return size;
}

TEST_CASE("the option status is the first condition in the order of their weight") {
  struct Row {
    std::uint32_t source;
    std::uint8_t main, feeder, transparencyUnit;
    std::uint32_t code;
  };
  for (const Row& row : {
           Row{2, 0x00, 0x00, 0x00, 0},  Row{2, 0x80, 0x00, 0x00, 22},
           Row{2, 0x40, 0x00, 0x00, 31}, Row{2, 0xC0, 0x00, 0x00, 31},
           Row{2, 0x3F, 0x4E, 0x42, 0},  // conditions of units that were not asked for
           Row{0, 0x40, 0x4E, 0x00, 31}, Row{0, 0x80, 0x4E, 0x00, 15},
           Row{0, 0x00, 0x42, 0x00, 15}, Row{0, 0x00, 0x4E, 0x00, 15},
           Row{0, 0x00, 0x44, 0x00, 14}, Row{0, 0x00, 0x4C, 0x00, 14},
           Row{0, 0x00, 0x48, 0x00, 13}, Row{0, 0x80, 0x48, 0x00, 13},
           Row{0, 0x00, 0x0E, 0x00, 0},  // without the summary bit
           Row{0, 0x00, 0xB1, 0x42, 0},  Row{0, 0x00, 0x40, 0x00, 0},
           Row{0, 0x80, 0x40, 0x00, 22}, Row{1, 0x00, 0x4E, 0x42, 15},
           Row{1, 0x80, 0x00, 0x42, 15}, Row{1, 0x40, 0x00, 0x42, 31},
           Row{1, 0x00, 0x00, 0x02, 0},  Row{1, 0x00, 0x00, 0x40, 0},
           Row{1, 0x80, 0x00, 0x02, 22}, Row{1, 0x00, 0x00, 0x4C, 0},
           Row{3, 0x00, 0x4E, 0x42, 0},  Row{0xFFFFFFFF, 0x80, 0x4E, 0x42, 22},
       }) {
    CAPTURE(row.source);
    CAPTURE(Hex({row.main, row.feeder, row.transparencyUnit}));
    OpenExtended scanner;
    scanner.AnswerStatus(Status(row.main, row.feeder, row.transparencyUnit));
    CHECK(PMGetOptionStatus(row.source) == row.code);
    CHECK(PMGetScanError() == 0);
  }
}

TEST_CASE_FIXTURE(OpenExtended, "a status that is not accepted or not delivered answers 7") {
  device.Converse(">! > 1C 46 <!");
  CHECK(PMGetOptionStatus(2) == 7);
  CHECK(PMGetOptionStatus(2) == 7);
  CHECK(PMGetScanError() == 0);
}

TEST_CASE_FIXTURE(OpenExtended, "the option status clears the last error") {
  settings.areaWidthPx = 32753;
  InitAcquire();
  REQUIRE(PMGetScanError() == 35);
  AnswerStatus();
  CHECK(PMGetOptionStatus(2) == 0);
  CHECK(PMGetScanError() == 0);
}

TEST_CASE_FIXTURE(OpenExtended, "the main status byte is delivered where it was asked for") {
  std::uint8_t main = 0xA5;
  AnswerStatus(Status(0xC7));
  CHECK(SetStatus(&main, 2) == 31);
  CHECK(main == 0xC7);
  device.FailNextWrite();
  CHECK(SetStatus(&main, 2) == 7);
  CHECK(main == 0xC7);
}

TEST_CASE("paper sizes are in pixels at half the maximum resolution") {
  struct Row {
    std::uint32_t source;
    std::uint8_t scanSource;
    PaperSize size;
  };
  for (const Row& row :
       {Row{0, 0, {0, 16000, 22400}}, Row{1, 0, {0, 16000, 22400}}, Row{2, 0, {0, 16000, 22400}},
        Row{2, 1, {0, 16000, 22400}}, Row{0, 1, {0, 12800, 20800}}, Row{1, 1, {0, 6400, 8000}},
        Row{7, 1, {0, 16000, 22400}}, Row{0, 2, {0, 12800, 20800}}}) {
    CAPTURE(row.source);
    CAPTURE(row.scanSource);
    OpenExtended scanner;
    scanner.settings.scanSource = row.scanSource;
    scanner.AnswerIdentity();
    CHECK(AskPaperSize(row.source) == row.size);
  }
}

TEST_CASE_FIXTURE(OpenExtended, "paper sizes wrap at 32 bits, halve, and then divide") {
  settings.scanSource = 1;
  // 65537 * 65537 = 131073 beyond 32 bits; 3 * 65537 = 196611, halved 98305
  AnswerIdentity(With(With(Identity(), 12, Word(65537)), 28, Word(65537) + Word(3)));
  CHECK(AskPaperSize(0) == PaperSize{0, 655, 983});
}

TEST_CASE_FIXTURE(OpenExtended, "the flatbed's paper size keeps the area of the open") {
  const Bytes larger = With(Identity(), 20, Word(9999) + Word(9999));
  AnswerIdentity(With(larger, 4, Word(200)));
  CHECK(AskPaperSize(2) == PaperSize{0, 8000, 11200});
}

TEST_CASE("a paper size whose identity cannot be read is 7 and leaves the sizes alone") {
  for (const std::string_view conversation : {">!", "> 1C 49 <!"}) {
    CAPTURE(conversation);
    OpenExtended scanner;
    scanner.device.Converse(conversation);
    CHECK(AskPaperSize(2) == PaperSize{7});
    CHECK(PMGetScanError() == 0);
  }
}

TEST_CASE_FIXTURE(OpenExtended, "bytes that a short identity does not bring stay as they were") {
  settings.scanSource = 1;
  device.Expect({0x1C, 0x49}).ShortReply(80, FromHex("42 38 00 00 C8 00 00 00"));
  CHECK(AskPaperSize(0) == PaperSize{0, 6400, 10400});
}

TEST_CASE_FIXTURE(ExtendedScanner, "asking for the feeder's paper refreshes the area of scans") {
  OpenFeeder();
  AnswerIdentity(With(Identity(), 28, Word(12) + Word(2)));
  CHECK(AskPaperSize(0) == PaperSize{0, 192, 32});
  Bytes cut = With(ParameterBlock(), 16, Word(12) + Word(2));
  StartScan(With(cut, 26, {0x01}), Header(0, 0, 24));
  SendLastBlock(Fill(24, 9));
  ExpectEject();
  CHECK(Acquire(64).record.done == 1);
}

TEST_CASE_FIXTURE(ExtendedScanner,
                  "asking for the transparency unit's paper keeps the scan's area") {
  REQUIRE(Open(Identity(), Status(0, 0, 0x80)) == 1);
  settings.scanSource = 1;
  AnswerIdentity(With(Identity(), 36, Word(12) + Word(2)));
  CHECK(AskPaperSize(1) == PaperSize{0, 192, 32});
  StartScan(With(ParameterBlock(), 26, {0x01}), Header(0, 0, 64));
  SendLastBlock(Fill(64, 9));
  CHECK(Acquire(64).record.done == 1);
}

TEST_CASE("the option unit is switched by ESC e with a value that its kind knows") {
  struct Row {
    std::uint32_t docFeedOption;
    std::uint8_t mainStatusBit5;
    std::uint32_t value;
    std::uint8_t sent;
  };
  for (const Row& row :
       {Row{1, 0, 0, 0}, Row{1, 0, 1, 1}, Row{1, 0, 2, 1}, Row{1, 1, 2, 1}, Row{1, 0, 0x100, 1},
        Row{0, 0, 0, 0}, Row{0, 0, 2, 1}, Row{0, 1, 0, 0}, Row{0, 1, 1, 1}, Row{0, 1, 2, 2},
        Row{0, 1, 0x1FF, 0xFF}, Row{2, 0, 0, 0}, Row{2, 0, 3, 3}, Row{2, 0, 0x100, 0}}) {
    CAPTURE(row.docFeedOption);
    CAPTURE(row.mainStatusBit5);
    CAPTURE(row.value);
    OpenExtended scanner;
    scanner.settings.docFeedOption = row.docFeedOption;
    scanner.settings.mainStatusBit5 = row.mainStatusBit5;
    scanner.device.Expect({0x1B, 0x65}).Reply({0x06}).Expect({row.sent}).Reply({0x06});
    CHECK(PMEnableOption(row.value) == 1);
  }
}

TEST_CASE_FIXTURE(OpenExtended, "identity, status and parameters are no scan: nothing to eject") {
  InitAcquire();
  AcceptParameters();
  AnswerStatus(Status(0x02));
  Acquire(64);
  PMEject(nullptr);
  device.Expect({0x19}).Reply({0x06});
  PMFeed(nullptr);
  AnswerStatus();
  PMGetOptionStatus(0);
  PMFeed(nullptr);
}

TEST_CASE_FIXTURE(OpenExtended, "switching an option fails at each transfer and sets no code") {
  for (const std::string_view conversation : {">!", "> 1B 65 < 15", "> 1B 65 <!", "> 1B 65 < 06 >!",
                                              "> 1B 65 < 06 > 01 <!", "> 1B 65 < 06 > 01 < 15"}) {
    CAPTURE(conversation);
    device.Converse(conversation);
    CHECK(PMEnableOption(1) == 0);
    CHECK(PMGetScanError() == 0);
  }
}

}  // namespace
}  // namespace pmddb832::tests::extended
