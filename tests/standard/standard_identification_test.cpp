#include "tests/safety/failing_allocation.h"
#include "tests/standard/standard_fixture.h"

// What an open of a standard scanner sends, and what it writes into the settings.

namespace pmddb832::tests::standard {
namespace {

// What an open makes of the record that the host filled with A5.
Bytes RecordAfterOpen(StandardScanner& scanner, const Bytes& identity, const Bytes& status) {
  scanner.AnswerProbe();
  scanner.AnswerIdentification(identity, status);
  return FilledRecordAfterOpen(scanner.settings);
}

// That record with what an open writes whatever the option unit is, for level B4.
Bytes IdentifiedRecord(const ScannerSettings& model) {
  Bytes record = FilledRecord(model);
  record = With(std::move(record), 0, FromHex("02 00 00 00 42 34 00 A5"));
  record = With(std::move(record), 8, Text("QM8700") + Bytes{0x00, 0xA5});
  record = With(std::move(record), 28, Word(1000) + Word(1400));
  record = With(std::move(record), 80, FromHex("05 00 08 00 32 00 64 00"));
  record = With(std::move(record), 164, {0x02, 0x00});
  record = With(std::move(record), 264, {0x00});
  record = With(std::move(record), 1568, {0x01, 0x00, 0x32, 0x00, 0xC8, 0x00});
  record = With(std::move(record), 1792, Text("SCANNER QM-8700 ") + Bytes{0x00});
  return With(std::move(record), 1860, FromHex("64 00 32 00 19 00"));
}

// A scanner in the middle of an open, behind its name. What it answers from there on ends the open.
struct NamedScanner : StandardScanner {
  explicit NamedScanner(const Bytes& product = Product()) {
    AnswerProbe();
    AnswerReset();
    Answer('?', {product});
  }

  void CheckOpenFails() {
    CHECK(PMOpenScanner(&settings) == 0);
    CHECK(PMGetScanError() == 1);
    CHECK(currentChannel->opened == 1);
  }
};

// An identity that is not good enough for an open.
void CheckIdentityRefused(const Reply& identity, bool dataRead) {
  NamedScanner scanner;
  scanner.device.Expect({0x1B, 0x49}).Reply(identity.Header());
  if (dataRead) scanner.device.Reply(identity.data);
  scanner.CheckOpenFails();
  CHECK(scanner.settings.scanInfoVariant == 0);
}

// A level that ends the identification behind the identity.
void CheckLevelRefused(std::string_view level, std::uint32_t storedLevel) {
  CAPTURE(level);
  NamedScanner scanner;
  scanner.settings.commandLevel = 99;
  scanner.Answer('I', {Identity(level)});
  scanner.CheckOpenFails();
  CHECK(scanner.settings.commandLevel == storedLevel);
  CHECK(std::string(scanner.settings.commandLevelText) == level);
  CHECK(scanner.settings.rangeMax == 0);
}

TEST_CASE_FIXTURE(StandardScanner, "open asks for reset, name, identity, status and name again") {
  AnswerProbe();
  device.Expect({0x1B, 0x40}).Reply({0x06});
  device.Expect({0x1B, 0x3F}).Reply({0x02, 0x00, 0x18, 0x00}).Reply(Product());
  device.Expect({0x1B, 0x49}).Reply({0x02, 0x00, 0x0D, 0x00});
  device.Reply(FromHex("42 34 52 32 00 52 64 00 41 E8 03 78 05"));
  device.Expect({0x1B, 0x66}).Reply({0x02, 0x00, 0x0B, 0x00}).Reply(Status());
  device.Expect({0x1B, 0x3F}).Reply({0x02, 0x00, 0x18, 0x00}).Reply(Product());
  CHECK(PMOpenScanner(&settings) == 1);
  CHECK(PMGetScanError() == 0);
  CHECK(currentChannel->opened == 1);
}

TEST_CASE_FIXTURE(StandardScanner, "standard: a flatbed writes its members and nothing else") {
  const Bytes expected = With(With(IdentifiedRecord(settings), 16, Word(2)), 24, {0x01, 0x00});
  CHECK(RecordAfterOpen(*this, Identity(), Status()) == expected);
}

TEST_CASE_FIXTURE(StandardScanner, "standard: a feeder writes its members and nothing else") {
  Bytes expected = With(With(IdentifiedRecord(settings), 16, Word(0)), 24, {0x02, 0x00});
  expected = With(With(expected, 36, Word(800) + Word(1300)), 1434, {0x01, 0x01});
  expected = With(expected, 1868, Word(0));
  CHECK(RecordAfterOpen(*this, Identity(), Status(0x30, 0x80)) == expected);
}

TEST_CASE_FIXTURE(StandardScanner, "standard: a transparency unit writes the option area alone") {
  Bytes expected = With(With(IdentifiedRecord(settings), 16, Word(1)), 24, {0x02, 0x00});
  expected = With(expected, 36, Word(400) + Word(500));
  CHECK(RecordAfterOpen(*this, Identity(), Status(0x30, 0, 0x80)) == expected);
}

TEST_CASE_FIXTURE(StandardScanner,
                  "standard: level B3 reads no status and keeps the known option") {
  Bytes expected = With(IdentifiedRecord(settings), 0, FromHex("01 00 00 00 42 33 00"));
  expected = With(With(expected, 80, FromHex("04 00 04 00")), 24, {0x02, 0x00});
  expected = With(expected, 36, Word(0) + Word(0));  // the A5 of docFeedOption is no flatbed
  CHECK(RecordAfterOpen(*this, Identity("B3"), {}) == expected);
}

TEST_CASE_FIXTURE(StandardScanner, "standard: a feeder comes before a transparency unit") {
  CHECK(Open(Identity(), Status(0, 0x80, 0x80)) == 1);
  CheckSettings("docFeedOption=0 optionWidth=800");
}

TEST_CASE_FIXTURE(StandardScanner, "standard: only bit 7 says that a unit is installed") {
  CHECK(Open(Identity(), Status(0x3D, 0x7F, 0x7F)) == 1);
  CheckSettings("docFeedOption=2 areaCount=1");
}

TEST_CASE("standard: the second feeder flag counts only with the first") {
  const auto flags = [](std::uint8_t mainStatus) {
    StandardScanner scanner("B4", Status(mainStatus, 0x80));
    return std::pair{scanner.settings.mainStatusBit5, scanner.settings.mainStatusBit4};
  };
  using Flags = std::pair<std::uint8_t, std::uint8_t>;
  CHECK(flags(0x20) == Flags{1, 0});
  CHECK(flags(0x10) == Flags{0, 0});
  CHECK(flags(0x30) == Flags{1, 1});
  CHECK(flags(0xCF) == Flags{0, 0});
}

TEST_CASE("standard: each command level has its code, its group and its halftones") {
  struct Row {
    const char* level;
    std::uint32_t code;
    std::uint16_t group;
    std::uint16_t halftones;
  };
  for (const Row& row :
       {Row{"B3", 1, 4, 4}, Row{"B4", 2, 5, 8}, Row{"B5", 3, 5, 9}, Row{"A5", 4, 5, 9},
        Row{"B6", 6, 6, 10}, Row{"B7", 7, 6, 10}, Row{"B8", 8, 6, 10}, Row{"B9", 6, 6, 10}}) {
    CAPTURE(row.level);
    StandardScanner scanner{row.level};
    CHECK(scanner.settings.commandLevel == row.code);
    CHECK(scanner.settings.levelGroup == row.group);
    CHECK(scanner.settings.halftoneInfo == row.halftones);
  }
}

TEST_CASE("standard: a level that is not supported fails the open with code 1") {
  for (const std::string_view level : {"A3", "A4", "A6", "C8", "b8", "8B"})
    CheckLevelRefused(level, 0);
}

TEST_CASE("standard: a level digit up to 2, or beyond ASCII, ends before the level is stored") {
  for (const std::string_view level : {"B2", "B1", "A0", "B ", "B\x80"})
    CheckLevelRefused(level, 99);
}

TEST_CASE_FIXTURE(
    StandardScanner,
    "standard: the numbers of the resolution list are stored as they are placed in it") {
  CHECK(Open(IdentityOf("B4", {1, 75, 300})) == 1);
  CheckSettings(
      "minResolution=1 minResolutionCopy=1 baseResolution=300 maxResolutionCopy=300 "
      "baseResolutionCopy=75");
  CHECK(settings.bedWidth == 333);  // 1000 * 100 / 300
}

TEST_CASE_FIXTURE(StandardScanner,
                  "standard: an area in hundredths of an inch keeps its low 16 bits") {
  CHECK(Open(IdentityOf("B4", {1})) == 1);
  CHECK(settings.bedWidth == (100000 & 0xFFFF));
  CHECK(settings.bedHeight == (140000 & 0xFFFF));
}

TEST_CASE_FIXTURE(StandardScanner,
                  "standard: bytes behind a whole number of resolutions belong to none") {
  CHECK(Open(Identity() + Bytes{0x11, 0x22}) == 1);
  CheckSettings("baseResolution=100 bedWidth=1000");
}

TEST_CASE("standard: 47 resolutions fill the reply buffer") {
  std::vector<std::uint16_t> resolutions(46, 77);
  resolutions.push_back(1000);
  StandardScanner scanner;
  const Bytes identity = IdentityOf("B4", resolutions);
  REQUIRE(identity.size() == 148);
  CHECK(scanner.Open(identity + Fill(2, 0)) == 1);
  CHECK(scanner.settings.baseResolution == 1000);
}

TEST_CASE("standard: an identity longer than the reply buffer is not read") {
  CheckIdentityRefused({Fill(0x97, 0x41)}, false);
  CheckIdentityRefused({Fill(0xFFFF, 0x41)}, false);
}

TEST_CASE("standard: an identity without a resolution is refused") {
  for (const std::size_t bytes : {0u, 3u, 7u, 9u}) CheckIdentityRefused({Fill(bytes, 0x42)}, true);
}

TEST_CASE("standard: an identity whose last resolution is 0 is refused") {
  CheckIdentityRefused({IdentityOf("B4", {100, 0})}, true);
}

TEST_CASE("standard: a doubled resolution beyond 16 bits is refused like 0") {
  NamedScanner scanner(Product("SCANNER QM-2700 "));
  scanner.Answer('I', {IdentityOf("B4", {100, 0x8000})});
  scanner.CheckOpenFails();
}

TEST_CASE_FIXTURE(StandardScanner, "standard: a refused reset fails the open with code 1") {
  AnswerProbe();
  device.Expect({0x1B, 0x40}).Reply({kNak});
  CHECK(PMOpenScanner(&settings) == 0);
  CHECK(PMGetScanError() == 1);
}

TEST_CASE("standard: an open fails with code 1 where the identity fails, or has no STX") {
  for (const std::string_view identity :
       {">!", "> 1B 49 <!", "> 1B 49 < 02 00 0D 00 <!", "> 1B 49 < 15 00 0D 00"}) {
    CAPTURE(identity);
    NamedScanner scanner;
    scanner.device.Converse(identity);
    scanner.CheckOpenFails();
  }
}

TEST_CASE_FIXTURE(NamedScanner, "standard: an unreadable status fails the open with code 1") {
  Answer('I', {Identity()});
  device.Converse("> 1B 66 < 02 00 93 00");  // 147 + 4 bytes: one too many
  CheckOpenFails();
  CheckSettings("commandLevel=2 scanInfoVariant=2");
}

TEST_CASE_FIXTURE(StandardScanner, "standard: a status as long as the reply buffer is taken") {
  CHECK(Open(Identity(), Status(0, 0x80) + Fill(135, 0xEE)) == 1);
  CHECK(settings.docFeedOption == 0);
}

TEST_CASE_FIXTURE(StandardScanner, "standard: what a short status does not hold counts as 0") {
  CHECK(Open(Identity(), {0x20, 0x80}) == 1);
  CheckSettings("docFeedOption=0 mainStatusBit5=1 optionWidth=0");
}

TEST_CASE_FIXTURE(OpenB4, "standard: a second open of an open set does nothing") {
  CHECK(OpenSet() == 1);
}

TEST_CASE_FIXTURE(OpenB4, "standard: a closed set identifies again at the next open") {
  PMCloseScanner();
  CHECK(currentChannel->opened == 0);
  PMCloseScanner();  // does nothing
  AnswerIdentification(IdentityOf("B5", {50, 200}));
  CHECK(OpenSet() == 1);
  CHECK(settings.baseResolution == 200);
}

TEST_CASE("standard: every allocation of an open may fail, and the next open succeeds") {
  const std::size_t before = AllocationCount();
  { StandardScanner scanner("B4"); }
  const std::size_t count = AllocationCount() - before;
  for (std::size_t left = count - 2; left < count; ++left) {  // the last two: lists of the set
    NamedScanner scanner;
    scanner.Answer('I', {Identity()});
    {
      const AllocationLimit limit(left);
      CHECK(PMOpenScanner(&scanner.settings) == 0);
    }
    CHECK(PMGetScanError() == 1);
    scanner.AnswerIdentification(Identity());
    CHECK(OpenSet() == 1);
  }
}

}  // namespace
}  // namespace pmddb832::tests::standard
