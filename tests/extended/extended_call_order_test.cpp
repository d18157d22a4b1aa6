#include "tests/extended/extended_fixture.h"

namespace pmddb832::tests::extended {
namespace {

// The default scan with its first two lines delivered, from the top.
struct HalfwayScanner : ExtendedScanner {
  HalfwayScanner() {
    REQUIRE(Open() == 1);
    StartScan(ParameterBlock(), Header(0, 0, 64), 1);
    SendLastBlock(Fill(16, 1) + Fill(16, 2) + Fill(16, 3) + Fill(16, 4));
    REQUIRE(Acquire(32).record.lines == 2);
  }
};

// The default scan about to deliver its first band.
struct StartingScanner : ExtendedScanner {
  StartingScanner() {
    REQUIRE(Open() == 1);
    StartScan(ParameterBlock(), Header(0, 0, 64), 1);
  }

  void SendLines() { SendLastBlock(Fill(16, 1) + Fill(16, 2) + Fill(16, 3) + Fill(16, 4)); }
};

TEST_CASE_FIXTURE(OpenExtended, "an acquisition before any set-up sends nothing and is 9") {
  CHECK(Acquire(64).recordBytes == kUnwrittenBand);
  CHECK(PMGetScanError() == 9);
}

TEST_CASE_FIXTURE(HalfwayScanner, "an acquisition behind a close in the middle is 9") {
  PMCloseScanner();
  const Band band = Acquire(32);
  CHECK(band.record.status == kFailed);
  CHECK(band.image == Fill(32, 0xA5));
  CHECK(PMGetScanError() == 9);
}

TEST_CASE_FIXTURE(HalfwayScanner, "an abort behind a close in the middle is 9") {
  const Bytes parameters = AskForWideLines(8);
  StartScan(parameters, Header(64000, 9, 0));
  SendBlock(Fill(64000, 1));
  Acquire(4 * 16000);
  PMCloseScanner();
  PMAbortScan();
  CHECK(PMGetScanError() == 9);
}

TEST_CASE_FIXTURE(HalfwayScanner, "a set-up behind a close fills its record, the scan is 9") {
  PMCloseScanner();
  CHECK(InitAcquire().substr(0, 11) == "01 00 00 00");
  CheckAcquireFails(64, 9);
}

TEST_CASE_FIXTURE(ExtendedScanner, "calls behind a failed open do nothing and report a failure") {
  AnswerProbe();
  AnswerReset();
  AnswerIdentity();
  device.Expect({0x1C, 0x46}).FailNextRead();
  REQUIRE(PMOpenScanner(&settings) == 0);
  InitAcquire();
  CheckAcquireFails(64, 9);
  PMAbortScan();
  CHECK(PMGetScanError() == 9);
  CHECK(PMSetFocus(1, 7) == 7);  // level B8, but no area to focus on
  CHECK(PMGetScanError() == 22);
  PMCloseScanner();
}

TEST_CASE_FIXTURE(ExtendedScanner, "a focus without an identity sends nothing and is 22") {
  AnswerProbe();
  device.Expect({0x1B, 0x40}).Reply({kNak});
  REQUIRE(PMOpenScanner(&settings) == 0);
  settings.commandLevel = 8;
  CHECK(PMSetFocus(1, 7) == 7);
  CHECK(PMGetScanError() == 22);
}

TEST_CASE_FIXTURE(HalfwayScanner, "a second open in the middle of a scan starts afresh") {
  const ReplacedSet replaced;
  REQUIRE(Open() == 1);
  CheckAcquireFails(64, 9);
  CHECK(ScanPage().record.done == 1);
}

TEST_CASE_FIXTURE(HalfwayScanner, "an unload in the middle of a scan gives everything back") {
  PMExit();
  CHECK(system.heapBlocks == 0);
  CHECK(Acquire(32).recordBytes == "A5 A5 A5 A5 A5 A5 A5 A5 A5 A5 A5 A5 A5 A5 A5 A5 A5 A5 A5 A5");
}

TEST_CASE_FIXTURE(HalfwayScanner, "a status in the middle of a scan does not disturb it") {
  AnswerStatus(Status(0x40));
  CHECK(PMGetOptionStatus(2) == 31);
  CHECK(Acquire(32).Rows(16) == "03 04");
}

// Automatic focus between two bands, with these parameters.
void FocusBetweenBands(ExtendedScanner& scanner, const Bytes& parameters) {
  scanner.AcceptParameters(parameters);
  scanner.device.Expect({0x1B, 0x70}).Reply({0x06}).Expect({0xFF}).Reply({0x06});
  scanner.device.Expect({0x1B, 0x71}).Reply({0x02, 0x00, 0x02, 0x00}).Reply({0x00, 0x41});
  CHECK(PMSetFocus(1, 0) == 1);
}

TEST_CASE_FIXTURE(HalfwayScanner, "a focus with a larger area between bands leaves white rows") {
  Set("areaWidthPx=1000 areaHeightPx=1400");
  FocusBetweenBands(*this, With(With(ParameterBlock(), 16, Word(1000) + Word(1400)), 28, {64}));
  const Band band = Acquire(32);
  CHECK(band.record.lines == 2);
  CHECK(band.Rows(16) == "FF FF");
}

TEST_CASE_FIXTURE(HalfwayScanner,
                  "a focus with a smaller area between bands writes its pixels only") {
  settings.areaWidthPx = 8;
  FocusBetweenBands(*this, With(ParameterBlock(), 16, Word(8) + Word(4)));
  CHECK(Acquire(32).Rows(8) == "02 A5 03 A5");
}

TEST_CASE_FIXTURE(HalfwayScanner,
                  "a focus with another pixel type between bands stays in the rows") {
  settings.pixelType = 7;
  FocusBetweenBands(*this, With(ParameterBlock(), 24, {0x13, 0x0C}));
  const Band band = Acquire(32);
  CHECK(band.record.status == kGoOn);
  CHECK(band.record.bytes == 32);
}

TEST_CASE_FIXTURE(HalfwayScanner, "a focus with a lower area between bands ends the scan") {
  settings.areaHeightPx = 1;
  FocusBetweenBands(*this, With(ParameterBlock(), 20, Word(1)));
  const Band band = Acquire(32);
  CHECK(band.record.lines == 0);
  CHECK(band.record.done == 1);
}

TEST_CASE_FIXTURE(HalfwayScanner, "settings that change between bands stay in the rows") {
  Set("pixelType=7 areaWidthPx=30000");
  settings.previewMode = settings.mirrorImage = 1;
  settings.docFeedOption = settings.keepPaper = 0xFFFFFFFF;
  settings.scanSource = 0xFF;
  CHECK(Acquire(32).Rows(16) == "03 04");
}

TEST_CASE("a refused set-up that is acquired all the same stays in its rows") {
  struct Row {
    std::uint32_t pixelType, width;  // a line of 4 bytes, by wrapping
    const char* modeAndBits;
    std::uint8_t linesPerBlock;
    const char* row;
  };
  for (const Row& row : {Row{5, 0x55555556, "23 08", 20, "01 01 01 FF"},
                         Row{8, 0x80000002, "00 0C", 32, "00 00 00 00"}}) {
    CAPTURE(row.pixelType);
    OpenExtended scanner;
    scanner.settings.pixelType = row.pixelType;
    scanner.settings.areaWidthPx = row.width;
    scanner.settings.areaHeightPx = 1;
    const Bytes block = With(ParameterBlock(), 16, Word(1000) + Word(1));
    scanner.StartScan(With(With(block, 24, FromHex(row.modeAndBits)), 28, {row.linesPerBlock}),
                      Header(0, 0, 6000), 5);
    CHECK(PMGetScanError() == 35);
    scanner.SendLastBlock(Fill(6000, 1));
    CHECK(scanner.Acquire(4).Hex() == row.row);
  }
}

TEST_CASE_FIXTURE(ExtendedScanner,
                  "a focus between bands whose white lines do not fit the data buffer") {
  REQUIRE(Open(With(Identity(), 20, Word(40000))) == 1);
  const Bytes parameters = AskForWideLines(8);
  StartScan(parameters, Header(64000, 1, 64000), 1);
  SendBlock(Fill(64000, 1));
  REQUIRE(Acquire(3 * 16000).record.lines == 3);
  settings.areaWidthPx = 32632;
  settings.originY = 1399.9375;  // one line is left of the area
  const Bytes area = Word(22399) + Word(32632) + Word(1);
  FocusBetweenBands(*this, With(With(parameters, 12, area), 28, {2}));
  CHECK(Acquire(16000).Rows(16000) == "FF");
}

TEST_CASE_FIXTURE(ExtendedScanner,
                  "a focus between bands that puts a line behind the data buffer leaves it white") {
  REQUIRE(Open(With(Identity(), 20, Word(40000))) == 1);
  const Bytes parameters = AskForWideLines(8);
  StartScan(parameters, Header(64000, 1, 64000), 1);
  SendBlock(Fill(64000, 1));
  REQUIRE(Acquire(4 * 16000).record.lines == 4);
  settings.areaWidthPx = 10872;
  settings.originY = 1399.9375;  // one line is left of the area
  const Bytes area = Word(22399) + Word(10872) + Word(1);
  FocusBetweenBands(*this, With(With(parameters, 12, area), 28, {6}));
  const Band band = Acquire(2 * 16000);
  CHECK(Bytes(band.image.begin() + 16000, band.image.end()) == Fill(16000, 0xFF));
}

TEST_CASE_FIXTURE(HalfwayScanner, "calls behind a second open without a ready channel fail") {
  settings.useDeviceInterface = 0;
  REQUIRE(PMOpenScanner(&settings) == 0);
  InitAcquire();
  CheckAcquireFails(64, 22);
  CHECK(PMGetOptionStatus(2) == 7);
  PMAbortScan();
  CHECK(PMGetScanError() == 9);
  PMCloseScanner();
  CHECK(system.heapBlocks == 0);
}

TEST_CASE_FIXTURE(StartingScanner, "a close during progress fails the band with 9") {
  duringProgress = PMCloseScanner;
  const Band band = Acquire(64);
  CHECK(band.record.status == kFailed);
  CHECK(band.image == Fill(64, 0xA5));
  CHECK(PMGetScanError() == 9);
}

TEST_CASE_FIXTURE(StartingScanner, "a set-up during progress ends the band with 9") {
  duringProgress = [this] {
    settings.areaWidthPx = 1000;
    InitAcquire(1);
  };
  const Band band = Acquire(64);
  CHECK(band.record.status == kFailed);
  CHECK(band.image == Fill(64, 0xA5));
  CHECK(PMGetScanError() == 9);
}

TEST_CASE_FIXTURE(StartingScanner,
                  "a set-up out of the device that sends the last block is that of the next scan") {
  device.duringReadOf = 65;
  device.duringRead = [this] { InitAcquire(1); };
  SendLines();
  CHECK(Acquire(64).record.status == kFailed);
  CHECK(PMGetScanError() == 9);
  device.ExpectBlock(0x1C, 'W', ParameterBlock());
  AnswerStart(Header(0, 0, 64));
  SendLines();
  CHECK(Acquire(64).Rows(16) == "01 02 03 04");
}

TEST_CASE_FIXTURE(OpenExtended, "the end of a scan of no lines is told as 100") {
  settings.areaHeightPx = 0;
  StartScan(With(ParameterBlock(), 20, Word(0)), Header(0, 0, 0), 1);
  CHECK(Acquire(64).record.done == 1);
  CHECK(progress == std::vector<std::uint32_t>{100});
}

TEST_CASE_FIXTURE(StartingScanner, "an acquisition during progress takes its lines from the band") {
  Band inner;
  duringProgress = [this, &inner] { inner = Acquire(32); };
  SendLines();
  const Band band = Acquire(64);
  CHECK(inner.Rows(16) == "01 02");
  CHECK(band.record.status == kGoOn);
  CHECK(band.Rows(16).substr(0, 5) == "03 04");
}

TEST_CASE_FIXTURE(StartingScanner, "an abort during progress lets the band end") {
  duringProgress = [this] {
    SendLines();
    PMAbortScan();
  };
  const Band band = Acquire(64);
  CHECK(band.record.status == kGoOn);
  CHECK(band.Rows(16) == "01 02 03 04");
}

TEST_CASE_FIXTURE(StartingScanner,
                  "a focus of a larger area during progress leaves the band's rows") {
  duringProgress = [this] {
    settings.areaWidthPx = 1000;
    FocusBetweenBands(*this, With(With(ParameterBlock(), 16, Word(1000)), 28, {64}));
    SendLines();
  };
  CHECK(Acquire(64).Rows(16) == "01 FF FF FF");
}

TEST_CASE_FIXTURE(StartingScanner,
                  "an open during progress ends the band, and the scanner scans again") {
  const ReplacedSet replaced;
  duringProgress = [this] { CHECK(Open() == 1); };
  const Band band = Acquire(64);
  CHECK(band.record.status == kFailed);
  CHECK(band.image == Fill(64, 0xA5));
  CHECK(ScanPage().record.done == 1);
}

}  // namespace
}  // namespace pmddb832::tests::extended
