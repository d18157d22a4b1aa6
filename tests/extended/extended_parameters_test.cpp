#include <numeric>

#include "tests/extended/extended_fixture.h"

namespace pmddb832::tests::extended {
namespace {

// The table 0, 1, ..., 255 moved by `first`, as the host has it.
void FillTable(std::uint8_t (&table)[256], std::uint8_t first) {
  std::iota(std::begin(table), std::end(table), first);
}

TEST_CASE_FIXTURE(ParameterScanner, "the parameters are sent behind FS W, each acknowledged") {
  InitAcquire();
  device.Expect({0x1C, 0x57}).Reply({0x06}).Expect(ParameterBlock()).Reply({0x06});
  AnswerStart(Header(0, 0, 64));
  SendLastBlock(Fill(64, 1));
  CHECK(Acquire(64).record.status == kGoOn);
}

TEST_CASE("depth and colour mode are those of the pixel type, previewed or not") {
  CheckParameters({{"pixelType=0", "24: 00 01"},
                   {"pixelType=2", "24: 00 08"},
                   {"pixelType=2 previewMode=1", "24: 00 08"},
                   {"pixelType=5", "24: 23 08"},
                   {"pixelType=6", "24: 13 04"},
                   {"pixelType=7", "24: 13 0C"},
                   {"pixelType=7 previewMode=1", "24: 13 0C"},
                   {"pixelType=8", "24: 00 0C"},
                   {"pixelType=8 previewMode=1", "24: 00 0C"}});
}

TEST_CASE("true colour is asked for red first by a host of pixel type 1 only") {
  for (const std::uint32_t host : {0u, 1u, 6u}) {
    CAPTURE(host);
    ParameterScanner scanner;
    scanner.settings.pixelType = 5;
    scanner.CheckParameters(With(ParameterBlock(), host == 1 ? "24: 13 08" : "24: 23 08"), host);
  }
}

TEST_CASE("a single-channel scan sends its channel as the colour mode") {
  CheckParameters({{"pixelType=5 monoScan=1 dropoutChannel=0", "24: 00"},
                   {"pixelType=5 monoScan=1 dropoutChannel=1", "24: 10"},
                   {"pixelType=5 monoScan=1 dropoutChannel=2", "24: 20"},
                   {"pixelType=5 monoScan=1 dropoutChannel=3", "24: 30"},
                   {"pixelType=5 monoScan=1 dropoutChannel=4", "24: 00"}});
}

TEST_CASE("the option byte is the source, as the option unit knows it, with the option parameter") {
  CheckParameters(
      {{"optionParam=0x77 docFeedOption=2 scanSource=0", "26: 00, 37: 00"},
       {"optionParam=0x77 docFeedOption=2 scanSource=1", "26: 01, 37: 77"},
       {"optionParam=0x77 docFeedOption=2 scanSource=3", "26: 03, 37: 77"},
       {"optionParam=0x77 docFeedOption=0 scanSource=0", "26: 00, 37: 00"},
       {"optionParam=0x77 docFeedOption=0 scanSource=1", "26: 01, 37: 77"},
       {"optionParam=0x77 docFeedOption=0 scanSource=2", "26: 01, 37: 77"},
       {"optionParam=0x77 docFeedOption=0 mainStatusBit5=1 scanSource=0", "26: 00, 37: 00"},
       {"optionParam=0x77 docFeedOption=0 mainStatusBit5=1 scanSource=2", "26: 02, 37: 77"},
       {"optionParam=0x77 docFeedOption=1 mainStatusBit5=1 scanSource=2", "26: 01, 37: 77"},
       {"optionParam=0x77 docFeedOption=1 scanSource=0", "26: 00, 37: 00"}},
      Identity(), Status(0, 0x80));
}

TEST_CASE_FIXTURE(ParameterScanner, "a scan replaces what switching the option left in the block") {
  device.Expect({0x1B, 0x65}).Reply({0x06}).Expect({0x01}).Reply({0x06});
  REQUIRE(PMEnableOption(1) == 1);
  CheckParameters(ParameterBlock());
}

TEST_CASE("the halftone code is the indexed row of the table, row 0 for any other index") {
  CheckParameters({{"halftoneIndex=0", "32: 01"},
                   {"halftoneIndex=1", "32: 00"},
                   {"halftoneIndex=2", "32: 10"},
                   {"halftoneIndex=3", "32: 20"},
                   {"halftoneIndex=4", "32: 80"},
                   {"halftoneIndex=5", "32: 90"},
                   {"halftoneIndex=6", "32: A0"},
                   {"halftoneIndex=7", "32: B0"},
                   {"halftoneIndex=8", "32: 03"},
                   {"halftoneIndex=9", "32: 00"},
                   {"halftoneIndex=10", "32: 01"},
                   {"halftoneIndex=-1", "32: 01"},
                   {"halftoneIndex=-2147483648", "32: 01"},
                   {"halftoneIndex=2147483647", "32: 01"}});
}

TEST_CASE("the enhancement byte is 1 with optionS, 2 when the halftone is overridden") {
  CheckParameters({{"halftoneIndex=2 halftoneOverride=0 optionS=0", "32: 10, 34: 00"},
                   {"halftoneIndex=2 halftoneOverride=0 optionS=7", "32: 10, 34: 01"},
                   {"halftoneIndex=2 halftoneOverride=1 optionS=0", "32: 03, 34: 00"},
                   {"halftoneIndex=2 halftoneOverride=5 optionS=7", "32: 03, 34: 02"}});
}

TEST_CASE("the override byte is the threshold, else n for gamma code 4 with optionS") {
  CheckParameters({{"thresholdT=0xFFFF customGammaCode=4 optionS=1", "33: 6E 01"},
                   {"thresholdT=0xFFFF customGammaCode=4 optionS=0", "33: 00 00"},
                   {"thresholdT=0xFFFF customGammaCode=3 optionS=1", "33: 00 01"},
                   {"thresholdT=0x1234 customGammaCode=4 optionS=1", "33: 34 01"},
                   {"thresholdT=0x0000 customGammaCode=4 optionS=1", "33: 00 01"},
                   {"thresholdT=0x00FF", "33: FF 00"},
                   {"thresholdT=0xFFFE", "33: FE 00"}});
}

TEST_CASE_FIXTURE(ParameterScanner, "the override byte stays until another scan sets it") {
  settings.thresholdT = 0x0055;
  CheckParameters(With(ParameterBlock(), 33, {0x55}));
  settings.thresholdT = 0xFFFF;
  CheckParameters(With(ParameterBlock(), 33, {0x55}));
}

TEST_CASE("without tables, gamma is sent as its code") {
  CheckParameters({{"gamma=100", "29: 01"},
                   {"gamma=220", "29: 02"},
                   {"gamma=300", "29: 00"},
                   {"gamma=280", "29: 10"},
                   {"gamma=250", "29: 20"},
                   {"gamma=180", "29: 02"},
                   {"gamma=0", "29: 02"}});
}

TEST_CASE("brightness is divided by 333 and sharpness by 500, toward zero") {
  CheckParameters({{"brightness=999 sharpness=999", "30: 03, 35: 01"},
                   {"brightness=-999 sharpness=-999", "30: FD, 35: FF"},
                   {"brightness=332 sharpness=499", "30: 00, 35: 00"},
                   {"brightness=-332 sharpness=-499", "30: 00, 35: 00"},
                   {"brightness=1000 sharpness=1000", "30: 03, 35: 02"},
                   {"brightness=-1000 sharpness=-1000", "30: FD, 35: FE"},
                   {"brightness=99900 sharpness=150000", "30: 2C, 35: 2C"},  // 300
                   // -6448899 and -4294967
                   {"brightness=-2147483648 sharpness=-2147483648", "30: FD, 35: C9"}});
}

TEST_CASE("mirror is sent as 1 and paramG as it is") {
  CheckParameters({{"mirrorImage=0x100 paramG=0xC3", "36: 01, 27: C3"}});
}

TEST_CASE_FIXTURE(ParameterScanner, "gamma tables go out as R, G and B, before the parameters") {
  Set("customGamma=1 customGammaCode=0x04");
  FillTable(settings.gammaTableR, 1);
  FillTable(settings.gammaTableG, 2);
  FillTable(settings.gammaTableB, 3);
  device.ExpectBlock(0x1B, 'z', Text("R") + Ramp(1, 256));
  device.ExpectBlock(0x1B, 'z', Text("G") + Ramp(2, 256));
  device.ExpectBlock(0x1B, 'z', Text("B") + Ramp(3, 256));
  CheckParameters(With(ParameterBlock(), 29, {0x04}));
}

TEST_CASE_FIXTURE(ParameterScanner, "a single-channel scan sends the red table alone, as M") {
  Set("customGamma=1 customGammaCode=0x05 monoScan=1 dropoutChannel=2 colorCorrection=1");
  FillTable(settings.gammaTableR, 9);
  device.Expect({0x1B, 0x7A}).Reply({0x06}).Expect(Text("M") + Ramp(9, 256)).Reply({0x06});
  CheckParameters(With(With(ParameterBlock(), 24, {0x20}), 29, {0x05}));
}

TEST_CASE_FIXTURE(ParameterScanner, "the colour matrix goes out as exactly nine bytes") {
  settings.colorCorrection = 1;
  std::iota(std::begin(settings.colorMatrix), std::end(settings.colorMatrix), std::uint8_t{0x81});
  device.Expect({0x1B, 0x6D}).Reply({0x06});
  device.Expect(FromHex("81 82 83 84 85 86 87 88 89")).Reply({0x06});
  CheckParameters(With(ParameterBlock(), 31, {0x01}));
}

TEST_CASE_FIXTURE(ParameterScanner, "the matrix follows the tables") {
  settings.customGamma = settings.colorCorrection = 1;
  for (const char* selector : {"R", "G", "B"}) {
    device.ExpectBlock(0x1B, 'z', Text(selector) + Fill(256, 0));
  }
  device.ExpectBlock(0x1B, 'm', Fill(9, 0));
  CheckParameters(With(With(ParameterBlock(), 29, {0x00}), 31, {0x01}));
}

TEST_CASE_FIXTURE(ParameterScanner,
                  "a scan with tables keeps the brightness of the last one without") {
  settings.brightness = 333;
  CheckParameters(With(ParameterBlock(), 30, {0x01}));
  settings.brightness = 0;
  settings.customGamma = settings.monoScan = 1;
  device.ExpectBlock(0x1B, 'z', Text("M") + Fill(256, 0));
  CheckParameters(With(ParameterBlock(), 29, {0x00, 0x01}));
}

TEST_CASE_FIXTURE(ParameterScanner, "a single-channel scan keeps the correction of the last one") {
  settings.colorCorrection = 1;
  device.ExpectBlock(0x1B, 'm', Fill(9, 0));
  CheckParameters(With(ParameterBlock(), 31, {0x01}));
  Set("monoScan=1 colorCorrection=0");
  CheckParameters(With(ParameterBlock(), 31, {0x01}));
  settings.monoScan = 0;
  CheckParameters(ParameterBlock());
}

TEST_CASE("zoom scales the resolution, rounded half up") {
  CheckParameters({{"resolution=300 zoom=100", "0: 2C 01 00 00 2C 01 00 00"},
                   {"resolution=300 zoom=50", "0: 96 00 00 00 96 00 00 00"},
                   {"resolution=101 zoom=50", "0: 33 00 00 00 33 00 00 00"},
                   {"resolution=33 zoom=101", "0: 21 00 00 00 21 00 00 00"},
                   {"resolution=65535 zoom=65535", "0: 0A 57 8F 02 0A 57 8F 02"}});
}

}  // namespace
}  // namespace pmddb832::tests::extended
