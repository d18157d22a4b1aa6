#include "tests/extended/extended_fixture.h"

namespace pmddb832::tests::extended {
namespace {

TEST_CASE_FIXTURE(OpenExtended, "the band record gets status, done flag, lines and bytes") {
  CHECK(ScanPage().recordBytes == "01 00 00 00 A5 A5 A5 A5 01 00 00 00 04 00 00 00 40 00 00 00");
}

TEST_CASE_FIXTURE(OpenExtended, "a buffer smaller than a line fails at once, without a code") {
  InitAcquire();
  const Band band = Acquire(15);
  CHECK(band.recordBytes == kUnwrittenBand);
  CHECK(PMGetScanError() == 0);
  CHECK(band.image == Fill(15, 0xA5));
}

TEST_CASE_FIXTURE(OpenExtended, "an acquisition clears the code of a refused set-up") {
  settings.areaWidthPx = 32753;
  InitAcquire();
  REQUIRE(PMGetScanError() == 35);
  Acquire(1);
  CHECK(PMGetScanError() == 0);
}

TEST_CASE_FIXTURE(OpenExtended, "a failed start writes the status alone") {
  InitAcquire();
  device.Expect({0x1C, 0x57}).Reply({kNak});
  CHECK(Acquire(64).recordBytes == kUnwrittenBand);
}

TEST_CASE_FIXTURE(OpenExtended, "a buffer holds whole lines only, and what is left is untouched") {
  StartScan(ParameterBlock(), Header(0, 0, 64));
  SendLastBlock(Ramp(0, 64));
  const Band band = Acquire(47);
  CHECK(band.recordBytes == "01 00 00 00 A5 A5 A5 A5 00 00 00 00 02 00 00 00 20 00 00 00");
  CHECK(band.image == Ramp(16, 16) + Ramp(0, 16) + Fill(15, 0xA5));
  const Band next = Acquire(1000);
  CHECK(next.recordBytes == "01 00 00 00 A5 A5 A5 A5 01 00 00 00 02 00 00 00 20 00 00 00");
  CHECK(next.image == Ramp(48, 16) + Ramp(32, 16) + Fill(968, 0xA5));
}

TEST_CASE("rows go from the top for the host's types 1, 3, 5 and 6, else from the band's bottom") {
  for (std::uint32_t hostPixelType = 0; hostPixelType < 10; ++hostPixelType) {
    CAPTURE(hostPixelType);
    OpenExtended scanner;
    scanner.StartScan(ParameterBlock(), Header(0, 0, 64), hostPixelType);
    scanner.SendLastBlock(Fill(16, 1) + Fill(16, 2) + Fill(16, 3) + Fill(16, 4));
    const bool topDown =
        hostPixelType == 1 || hostPixelType == 3 || hostPixelType == 5 || hostPixelType == 6;
    CHECK(scanner.Acquire(48).Rows(16) == (topDown ? "01 02 03" : "03 02 01"));
    CHECK(scanner.Acquire(48).Rows(16) == "04 A5 A5");
  }
}

TEST_CASE_FIXTURE(OpenExtended, "lines that fit are counted in 16 bits") {
  Set("areaWidthPx=4 areaHeightPx=70000");
  const Bytes block = With(ParameterBlock(), 16, Word(4) + Word(1400));
  InitAcquire();
  CHECK(Acquire(65536 * 4).record.status == kFailed);
  AcceptParameters(block);
  AnswerStart(Header(1016, 275, 0));
  SendBlock(Fill(1016, 7));
  CHECK(Acquire(65537 * 4).record.lines == 1);
}

TEST_CASE_FIXTURE(OpenExtended,
                  "progress is told at every fifth line of a band, and 100 at the end") {
  settings.areaHeightPx = 12;
  StartScan(With(ParameterBlock(), 20, Word(12)), Header(0, 0, 192));
  SendLastBlock(Fill(192, 1));
  CHECK(Acquire(7 * 16).record.done == 0);
  CHECK(progress == std::vector<std::uint32_t>{0, 41});
  CHECK(Acquire(7 * 16).record.done == 1);
  CHECK(progress == std::vector<std::uint32_t>{0, 41, 58, 100});
}

TEST_CASE_FIXTURE(OpenExtended, "progress is told before the block of its line is read") {
  StartScan(ParameterBlock(), Header(0, 0, 64));
  device.FailNextRead();
  Acquire(64);
  CHECK(progress == std::vector<std::uint32_t>{0});
}

TEST_CASE_FIXTURE(OpenExtended,
                  "what the progress routine changes in the settings counts from its line on") {
  settings.areaHeightPx = 12;
  StartScan(With(ParameterBlock(), 20, Word(12)), Header(0, 0, 192), 1);
  SendLastBlock(Fill(192, 0xFF));
  atPercent = 1;  // the second call, at line 5
  duringProgress = [this] { settings.previewMode = 1; };
  CHECK(Acquire(192).Rows(16) == "FF FF FF FF FF EA EA EA EA EA EA EA");
  CHECK(progress == std::vector<std::uint32_t>{0, 41, 83, 100});
}

TEST_CASE_FIXTURE(OpenExtended,
                  "what changes in the settings while a block is read counts from its lines on") {
  const Bytes parameters = AskForWideLines(7);  // blocks of four lines and of three
  InitAcquire(1, nullptr);
  AcceptParameters(parameters);
  AnswerStart(Header(64000, 1, 48000));
  SendBlock(Fill(64000, 0xFF));
  SendLastBlock(Fill(48000, 0xFF));
  device.duringReadOf = 48001;
  device.duringRead = [this] { settings.previewMode = 1; };
  CHECK(Acquire(7 * 16000).Rows(16000) == "FF FF FF FF EA EA EA");
}

TEST_CASE_FIXTURE(OpenExtended, "a call behind the end delivers no line and is done again") {
  ScanPage();
  const Band band = Acquire(64);
  CHECK(band.recordBytes == "01 00 00 00 A5 A5 A5 A5 01 00 00 00 00 00 00 00 00 00 00 00");
  CHECK(band.image == Fill(64, 0xA5));
  CHECK(progress == std::vector<std::uint32_t>{0, 100, 100});
}

TEST_CASE_FIXTURE(OpenExtended, "a scan of no lines starts the transfer and is done") {
  settings.areaHeightPx = 0;
  StartScan(With(ParameterBlock(), 20, Word(0)), Header(0, 0, 0));
  CHECK(Acquire(64).recordBytes == "01 00 00 00 A5 A5 A5 A5 01 00 00 00 00 00 00 00 00 00 00 00");
  CHECK(progress == std::vector<std::uint32_t>{100});
}

TEST_CASE_FIXTURE(OpenExtended, "lines below the area are white") {
  settings.originY = 1398;
  StartScan(With(ParameterBlock(), 12, Word(1398) + Word(16) + Word(2)), Header(0, 0, 32));
  SendLastBlock(Fill(16, 1) + Fill(16, 2));
  CHECK(Acquire(64).Rows(16) == "FF FF 02 01");
}

TEST_CASE_FIXTURE(OpenExtended,
                  "lines below the area replace what the scanner sends all the same") {
  settings.originY = 1398;
  StartScan(With(ParameterBlock(), 12, Word(1398) + Word(16) + Word(2)), Header(0, 0, 64));
  SendLastBlock(Fill(64, 1));
  CHECK(Acquire(64).Rows(16) == "FF FF 01 01");
}

TEST_CASE_FIXTURE(OpenExtended, "white lines are white before they are converted") {
  Set("originY=1400 previewMode=1");
  StartScan(With(ParameterBlock(), 12, Word(1400) + Word(16) + Word(0)), Header(0, 0, 0));
  SendLastBlock({});
  CHECK(Acquire(64).Rows(16) == "EA EA EA EA");
}

// When a page of the option unit is ejected: sources, what the identification told, and what a
// status is answered with if one is asked for.
struct EjectRow {
  std::uint8_t scanSource;
  std::uint32_t docFeedOption;
  std::uint8_t mainStatusBit5;
  std::uint32_t keepPaper, feederStatusExtra;
  const char* ends;  // "" without, "eject", or the feeder's status byte that is asked for
};

void ScriptEnd(ExtendedScanner& scanner, std::string_view ends) {
  if (ends == "eject") return scanner.ExpectEject();
  if (ends.empty()) return;
  scanner.AnswerStatus(Status(0, FromHex(ends.substr(0, 2))[0]));
  if (ends.size() > 2) scanner.ExpectEject();
}

TEST_CASE("the end of a page ejects it as the feeder wants") {
  for (const EjectRow& row : {
           EjectRow{1, 0, 0, 0, 0, "eject"},
           EjectRow{1, 0, 0, 1, 0, "eject"},
           EjectRow{1, 0, 0, 1, 1, "eject"},
           EjectRow{1, 0, 1, 0, 0, "eject"},
           EjectRow{1, 0, 1, 1, 0, ""},
           EjectRow{1, 0, 1, 1, 1, ""},
           EjectRow{1, 0, 1, 0, 1, "48 eject"},
           EjectRow{1, 0, 1, 0, 1, "00"},
           EjectRow{1, 0, 1, 0, 1, "44"},
           EjectRow{1, 0, 1, 0, 1, "4A"},
           EjectRow{0, 0, 0, 0, 0, ""},
           EjectRow{0, 0, 1, 0, 0, ""},
           EjectRow{1, 1, 0, 0, 0, ""},
           EjectRow{1, 2, 0, 0, 0, ""},
       }) {
    CAPTURE(row.scanSource);
    CAPTURE(row.docFeedOption);
    CAPTURE(row.ends);
    ExtendedScanner scanner;
    REQUIRE(scanner.Open(Identity(), Status(0, 0x80)) == 1);
    ScannerSettings& settings = scanner.settings;
    settings.scanSource = row.scanSource;
    settings.docFeedOption = row.docFeedOption;
    settings.mainStatusBit5 = row.mainStatusBit5;
    settings.keepPaper = row.keepPaper;
    settings.feederStatusExtra = row.feederStatusExtra;
    scanner.StartScan(With(ParameterBlock(), 26, {row.scanSource}), Header(0, 0, 64));
    scanner.SendLastBlock(Fill(64, 1));
    ScriptEnd(scanner, row.ends);
    CHECK(scanner.Acquire(64).record.status == kGoOn);
  }
}

TEST_CASE("an eject that fails is a failure without a code; the band stays delivered") {
  for (const std::string_view eject : {">!", "> 0C <!", "> 0C < 15"}) {
    CAPTURE(eject);
    ExtendedScanner scanner;
    scanner.OpenFeeder();
    scanner.StartScan(With(ParameterBlock(), 26, {0x01}), Header(0, 0, 64));
    scanner.SendLastBlock(Fill(64, 1));
    scanner.device.Converse(eject);
    CHECK(scanner.Acquire(64).recordBytes ==
          "02 00 00 00 A5 A5 A5 A5 01 00 00 00 04 00 00 00 40 00 00 00");
    CHECK(PMGetScanError() == 0);
  }
}

TEST_CASE_FIXTURE(ExtendedScanner, "the page is ejected behind the last band, after the 100") {
  OpenFeeder();
  StartScan(With(ParameterBlock(), 26, {0x01}), Header(0, 0, 64));
  SendLastBlock(Fill(64, 1));
  CHECK(Acquire(48).record.done == 0);
  CHECK(device.Verdict() == "as scripted");
  device.FailNextWrite();
  CHECK(Acquire(48).record.status == kFailed);
  CHECK(progress.back() == 100);
}

TEST_CASE_FIXTURE(ExtendedScanner,
                  "a page is ejected behind a close in the last call of the routine") {
  OpenFeeder();
  StartScan(With(ParameterBlock(), 26, {0x01}), Header(0, 0, 64));
  SendLastBlock(Fill(64, 1));
  ExpectEject();
  atPercent = 100;
  duringProgress = PMCloseScanner;
  CHECK(Acquire(64).record.status == kGoOn);
  CHECK(PMGetScanError() == 0);
}

TEST_CASE_FIXTURE(ExtendedScanner, "pages of a feeder follow each other, each ejected") {
  OpenFeeder();
  for (int page = 0; page < 3; ++page) {
    StartScan(With(ParameterBlock(), 26, {0x01}), Header(0, 0, 64));
    SendLastBlock(Fill(64, 1));
    ExpectEject();
    CHECK(Acquire(64).record.status == kGoOn);
    PMEject(nullptr);  // nothing is left to eject
  }
}

TEST_CASE_FIXTURE(ExtendedScanner,
                  "a call behind the end of an ejected page has nothing to eject") {
  OpenFeeder();
  StartScan(With(ParameterBlock(), 26, {0x01}), Header(0, 0, 64));
  SendLastBlock(Fill(64, 1));
  ExpectEject();
  CHECK(Acquire(64).record.status == kGoOn);
  CHECK(Acquire(64).record.status == kFailed);
}

TEST_CASE_FIXTURE(OpenExtended, "a started scan allows a feed and an eject again") {
  device.Expect({0x19}).Reply({0x06});
  PMFeed(nullptr);
  ScanPage();
  ExpectEject();
  PMEject(nullptr);
}

}  // namespace
}  // namespace pmddb832::tests::extended
