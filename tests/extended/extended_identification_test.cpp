#include <cstring>

#include "tests/extended/extended_fixture.h"

namespace pmddb832::tests::extended {
namespace {

// What an open makes of the record that the host filled with A5.
Bytes RecordAfterOpen(ExtendedScanner& scanner, const Bytes& identity, const Bytes& status) {
  scanner.AnswerProbe();
  scanner.AnswerReset();
  scanner.AnswerIdentity(identity);
  scanner.AnswerStatus(status);
  return FilledRecordAfterOpen(scanner.settings);
}

// That record with what an open writes whatever the option unit is, for level B8.
Bytes IdentifiedRecord(const ScannerSettings& model) {
  Bytes record = FilledRecord(model);
  record = With(std::move(record), 0, FromHex("08 00 00 00 42 38 00") + Bytes{0xA5});
  record = With(std::move(record), 8, Text("QM8700") + Bytes{0x00, 0xA5});
  record = With(std::move(record), 28, Word(1000) + Word(1400));
  record = With(std::move(record), 80, FromHex("06 00 0A 00 32 00 64 00 40 06"));
  record = With(std::move(record), 164, {0x03, 0x00});
  record = With(std::move(record), 264, {0x00});
  record = With(std::move(record), 1568, {0x01, 0x00, 0x32, 0x00, 0xC8, 0x00});
  record = With(std::move(record), 1792, Text("SCANNER QM-8700 ") + Bytes{0x00});
  return With(std::move(record), 1860, FromHex("40 06 32 00 64 00"));
}

TEST_CASE_FIXTURE(ExtendedScanner, "open resets, then reads the identity, then the status") {
  device.Expect({0x1B, 0x49}).Reply({0x02, 0x02, 0x02, 0x00}).Reply({0x42, 0x38});
  device.Expect({0x1B, 0x40}).Reply({0x06});
  device.Expect({0x1C, 0x49}).Reply(Identity());
  device.Expect({0x1C, 0x46}).Reply(Status());
  CHECK(PMOpenScanner(&settings) == 1);
  CHECK(PMGetScanError() == 0);
  CHECK(currentChannel->opened == 1);
}

TEST_CASE_FIXTURE(ExtendedScanner, "identifying a flatbed writes its members and nothing else") {
  const Bytes expected = With(With(IdentifiedRecord(settings), 16, Word(2)), 24, {0x01, 0x00});
  CHECK(RecordAfterOpen(*this, Identity(), Status()) == expected);
}

TEST_CASE_FIXTURE(ExtendedScanner, "identifying a feeder writes its members and nothing else") {
  Bytes expected = With(With(IdentifiedRecord(settings), 16, Word(0)), 24, {0x02, 0x00});
  expected = With(With(expected, 36, Word(800) + Word(1300)), 1434, {0x01, 0x01});
  expected = With(expected, 1868, Word(1));
  CHECK(RecordAfterOpen(*this, With(Identity(), 44, {0x38}), Status(0, 0x80)) == expected);
}

TEST_CASE_FIXTURE(ExtendedScanner, "a transparency unit gives the option area and no feeder flag") {
  Bytes expected = With(With(IdentifiedRecord(settings), 16, Word(1)), 24, {0x02, 0x00});
  expected = With(expected, 36, Word(400) + Word(500));
  CHECK(RecordAfterOpen(*this, With(Identity(), 44, {0x38}), Status(0, 0, 0x80)) == expected);
}

TEST_CASE_FIXTURE(ExtendedScanner, "a feeder comes before a transparency unit") {
  CHECK(Open(Identity(), Status(0, 0x80, 0x80)) == 1);
  CheckSettings("docFeedOption=0 optionWidth=800");
}

TEST_CASE_FIXTURE(ExtendedScanner, "only bit 7 of the status bytes says that a unit is installed") {
  CHECK(Open(Identity(), Status(0x3D, 0x7F, 0x7F)) == 1);
  CHECK(settings.docFeedOption == 2);
}

TEST_CASE("each command level has its code, its group and its halftones") {
  struct Row {
    char digit;
    std::uint32_t level;
    std::uint16_t group;
    std::uint16_t halftones;
  };
  for (const Row& row : {Row{'4', 2, 5, 8}, Row{'5', 3, 5, 9}, Row{'6', 6, 6, 10},
                         Row{'7', 7, 6, 10}, Row{'8', 8, 6, 10}}) {
    CAPTURE(row.digit);
    ExtendedScanner scanner;
    CHECK(scanner.Open(With(Identity(), 1, Text({&row.digit, 1}))) == 1);
    CHECK(scanner.settings.commandLevel == row.level);
    CHECK(scanner.settings.levelGroup == row.group);
    CHECK(scanner.settings.halftoneInfo == row.halftones);
  }
}

TEST_CASE("level B3 reads no status and keeps the option that was known") {
  for (const std::uint32_t option : {0u, 1u, 2u}) {
    CAPTURE(option);
    ExtendedScanner scanner;
    scanner.settings.docFeedOption = option;
    scanner.AnswerProbe();
    scanner.AnswerReset();
    scanner.AnswerIdentity(With(Identity(), 0, Text("B3")));
    CHECK(PMOpenScanner(&scanner.settings) == 1);
    scanner.CheckSettings("commandLevel=1 levelGroup=4 halftoneInfo=4");
    CHECK(scanner.settings.docFeedOption == option);
    CHECK(scanner.settings.areaCount == (option == 2 ? 1 : 2));
    scanner.CheckSettings("bedWidth=0 optionWidth=0");
  }
}

TEST_CASE("an unknown command level fails the open with code 10 and the channel open") {
  for (const std::string_view level : {"C8", "B9", "B2", "A5", "b8", "B ", "8B"}) {
    CAPTURE(level);
    ExtendedScanner scanner;
    scanner.AnswerProbe();
    scanner.AnswerReset();
    scanner.AnswerIdentity(With(Identity(), 0, Text(level)));
    CHECK(PMOpenScanner(&scanner.settings) == 0);
    CHECK(PMGetScanError() == 10);
    CHECK(currentChannel->opened == 1);
    CHECK(std::string(scanner.settings.commandLevelText) == level);
    scanner.CheckSettings("commandLevel=0 rangeMax=0");
  }
}

TEST_CASE_FIXTURE(ExtendedScanner, "resolutions are the low 16 bits, doubled and halved") {
  const Bytes resolutions = FromHex("64 00 01 00 78 96 34 12 FF FF 34 12");
  CHECK(Open(With(Identity(), 4, resolutions)) == 1);
  CheckSettings(
      "baseResolution=100 minResolution=0x2CF0 maxResolution=0x7FFF baseResolutionCopy=100 "
      "minResolutionCopy=0x2CF0 maxResolutionCopy=0x7FFF");
  CHECK(settings.bedWidth == 1);  // 1000 pixels of 1/65636 inch
}

TEST_CASE_FIXTURE(ExtendedScanner, "areas wrap at 32 bits before they are divided") {
  CHECK(Open(With(Identity(), 20, Word(42949675) + Word(0x80000003))) == 1);
  CHECK(settings.bedWidth == 2);   // 4294967500 is 204
  CHECK(settings.bedHeight == 3);  // 214748365100 is 300
}

TEST_CASE("feeder flags come from bits 5, 4 and 3, and none without bit 5") {
  struct Row {
    std::uint8_t flags;
    const char* modelId;
    const char* expected;  // mainStatusBit5, mainStatusBit4, feederStatusExtra
  };
  for (const Row& row : {Row{0x18, "", "0 0 0"}, Row{0xDF, "", "0 0 0"}, Row{0x20, "", "1 0 0"},
                         Row{0x30, "", "1 1 0"}, Row{0x28, "", "1 0 1"}, Row{0x38, "", "1 1 1"},
                         Row{0x20, "RV3100", "1 0 1"}, Row{0x00, "RV3100", "0 0 0"},
                         Row{0x20, "RV31000", "1 0 0"}, Row{0x20, "RV310", "1 0 0"}}) {
    CAPTURE(row.flags);
    CAPTURE(row.modelId);
    ExtendedScanner scanner;
    ScannerSettings& settings = scanner.settings;
    settings.mainStatusBit5 = settings.mainStatusBit4 = 9;
    settings.feederStatusExtra = 9;
    std::strcpy(settings.modelId, row.modelId);
    scanner.OpenFeeder(row.flags);
    CHECK(std::to_string(settings.mainStatusBit5) + ' ' + std::to_string(settings.mainStatusBit4) +
              ' ' + std::to_string(settings.feederStatusExtra) ==
          row.expected);
  }
}

TEST_CASE_FIXTURE(ExtendedScanner, "only the first seven bytes of a model id make it an RV3100") {
  std::memcpy(settings.modelId, "RV3100\0Z", 8);
  OpenFeeder(0x20);
  CHECK(settings.feederStatusExtra == 1);
}

TEST_CASE_FIXTURE(ExtendedScanner,
                  "an identity that cannot be read leaves the record and no code") {
  AnswerProbe();
  AnswerReset();
  device.Expect({0x1C, 0x49}).FailNextRead();
  const Bytes before = BytesOf(settings);
  CHECK(PMOpenScanner(&settings) == 0);
  CHECK(PMGetScanError() == 0);
  CHECK(BytesOf(settings) == before);
  CHECK(currentChannel->opened == 1);
}

TEST_CASE_FIXTURE(ExtendedScanner, "a status that cannot be read fails the open with code 7") {
  settings.docFeedOption = 1;
  AnswerProbe();
  AnswerReset();
  AnswerIdentity();
  device.Expect({0x1C, 0x46}).FailNextRead();
  CHECK(PMOpenScanner(&settings) == 0);
  CHECK(PMGetScanError() == 7);
  CheckSettings("commandLevel=8 docFeedOption=1 rangeEnabled=0");
  CHECK(currentChannel->opened == 1);
}

TEST_CASE("a reset that fails ends the open without a code") {
  for (const std::string_view reset : {">!", "> 1B 40 <!", "> 1B 40 < 15"}) {
    CAPTURE(reset);
    ExtendedScanner scanner;
    scanner.AnswerProbe();
    scanner.device.Converse(reset);
    CHECK(PMOpenScanner(&scanner.settings) == 0);
    CHECK(PMGetScanError() == 0);
    CHECK(scanner.settings.scanInfoVariant == 0);
  }
}

TEST_CASE_FIXTURE(OpenExtended, "close gives the data buffer and the channel back, once") {
  CHECK(system.heapBlocks == 1);
  PMCloseScanner();
  CHECK(system.heapBlocks == 0);
  CHECK(currentChannel->opened == 0);
  currentChannel->opened = 1;
  PMCloseScanner();
  CHECK(currentChannel->opened == 1);
}

TEST_CASE_FIXTURE(OpenExtended, "an open set does not identify again, a closed one does") {
  CHECK(OpenSet() == 1);
  CHECK(system.heapBlocks == 1);
  PMCloseScanner();
  AnswerReset();
  AnswerIdentity();
  AnswerStatus();
  CHECK(OpenSet() == 1);
  CHECK(system.heapBlocks == 1);
}

}  // namespace
}  // namespace pmddb832::tests::extended
