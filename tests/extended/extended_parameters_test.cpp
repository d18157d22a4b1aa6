#include <limits>
#include <numeric>

#include "tests/extended/extended_fixture.h"

namespace pmddb832::tests::extended {
namespace {

// The table 0, 1, ..., 255 moved by `first`, as the host has it.
void FillTable(std::uint8_t (&table)[256], std::uint8_t first) {
  std::iota(std::begin(table), std::end(table), first);
}

// An open scanner of which only the parameters of its scans count.
struct ParameterScanner : ExtendedScanner {
  explicit ParameterScanner(const Bytes& status = Status()) {
    REQUIRE(Open(Identity(), status) == 1);
  }

  // A scan whose parameters must be these. It ends there: the scanner is still warming up.
  void CheckParameters(const Bytes& block, std::uint32_t hostPixelType = 2) {
    InitAcquire(hostPixelType);
    AcceptParameters(block);
    AnswerStatus(Status(0x02));
    Acquire(0x10000);
    CHECK(PMGetScanError() == 43);
  }
};

TEST_CASE_FIXTURE(ParameterScanner, "the parameters are sent behind FS W, each acknowledged") {
  InitAcquire();
  device.Expect({0x1C, 0x57}).Reply({0x06}).Expect(ParameterBlock()).Reply({0x06});
  AnswerStart(Header(0, 0, 64));
  SendLastBlock(Fill(64, 1));
  CHECK(Acquire(64).record.status == kGoOn);
}

TEST_CASE("depth and colour mode are those of the pixel type") {
  struct Row {
    std::uint32_t pixelType, previewMode, hostPixelType;
    const char* modeAndBits;
  };
  for (const Row& row : {Row{0, 0, 0, "00 01"}, Row{2, 0, 2, "00 08"}, Row{5, 0, 5, "23 08"},
                         Row{5, 0, 1, "13 08"}, Row{5, 0, 6, "23 08"}, Row{5, 0, 0, "23 08"},
                         Row{6, 0, 6, "13 04"}, Row{7, 0, 7, "13 0C"}, Row{7, 1, 7, "13 0C"},
                         Row{8, 0, 8, "00 0C"}, Row{8, 1, 8, "00 0C"}, Row{2, 1, 2, "00 08"}}) {
    CAPTURE(row.pixelType);
    CAPTURE(row.hostPixelType);
    ParameterScanner scanner;
    scanner.settings.pixelType = row.pixelType;
    scanner.settings.previewMode = row.previewMode;
    scanner.CheckParameters(With(ParameterBlock(), 24, FromHex(row.modeAndBits)),
                            row.hostPixelType);
  }
}

TEST_CASE("a single-channel scan sends its channel as the colour mode") {
  const Bytes modes{0x00, 0x10, 0x20, 0x30, 0x00};
  for (std::uint16_t channel = 0; channel < modes.size(); ++channel) {
    CAPTURE(channel);
    ParameterScanner scanner;
    scanner.settings.pixelType = 5;
    scanner.settings.monoScan = 1;
    scanner.settings.dropoutChannel = channel;
    scanner.CheckParameters(With(ParameterBlock(), 24, {modes[channel]}), 5);
  }
}

TEST_CASE("the option byte is the source, as the option unit knows it, with the option parameter") {
  struct Row {
    std::uint32_t docFeedOption;
    std::uint8_t mainStatusBit5, scanSource, optionByte, optionParam;
  };
  for (const Row& row :
       {Row{2, 0, 0, 0, 0}, Row{2, 0, 1, 1, 0x77}, Row{2, 0, 3, 3, 0x77}, Row{0, 0, 0, 0, 0},
        Row{0, 0, 1, 1, 0x77}, Row{0, 0, 2, 1, 0x77}, Row{0, 1, 0, 0, 0}, Row{0, 1, 2, 2, 0x77},
        Row{1, 1, 2, 1, 0x77}, Row{1, 0, 0, 0, 0}}) {
    CAPTURE(row.docFeedOption);
    CAPTURE(row.scanSource);
    ParameterScanner scanner(Status(0, 0x80));
    scanner.settings.docFeedOption = row.docFeedOption;
    scanner.settings.mainStatusBit5 = row.mainStatusBit5;
    scanner.settings.scanSource = row.scanSource;
    scanner.settings.optionParam = 0x77;
    const Bytes block = With(ParameterBlock(), 26, {row.optionByte});
    scanner.CheckParameters(With(block, 37, {row.optionParam}));
  }
}

TEST_CASE_FIXTURE(ParameterScanner, "a scan replaces what switching the option left in the block") {
  device.Expect({0x1B, 0x65}).Reply({0x06}).Expect({0x01}).Reply({0x06});
  REQUIRE(PMEnableOption(1) == 1);
  CheckParameters(ParameterBlock());
}

TEST_CASE("the halftone code is the indexed row of the table, row 0 for any other index") {
  struct Row {
    std::int32_t index;
    std::uint8_t code;
  };
  constexpr auto kLowest = std::numeric_limits<std::int32_t>::min();
  constexpr auto kHighest = std::numeric_limits<std::int32_t>::max();
  for (const Row& row : {Row{0, 0x01}, Row{1, 0x00}, Row{2, 0x10}, Row{3, 0x20}, Row{4, 0x80},
                         Row{5, 0x90}, Row{6, 0xA0}, Row{7, 0xB0}, Row{8, 0x03}, Row{9, 0x00},
                         Row{10, 0x01}, Row{-1, 0x01}, Row{kLowest, 0x01}, Row{kHighest, 0x01}}) {
    CAPTURE(row.index);
    ParameterScanner scanner;
    scanner.settings.halftoneIndex = row.index;
    scanner.CheckParameters(With(ParameterBlock(), 32, {row.code}));
  }
}

TEST_CASE("the enhancement byte is 1 with optionS, 2 when the halftone is overridden") {
  struct Row {
    std::uint32_t halftoneOverride, optionS;
    std::uint8_t halftone, enhancement;
  };
  for (const Row& row :
       {Row{0, 0, 0x10, 0}, Row{0, 7, 0x10, 1}, Row{1, 0, 0x03, 0}, Row{5, 7, 0x03, 2}}) {
    CAPTURE(row.halftoneOverride);
    CAPTURE(row.optionS);
    ParameterScanner scanner;
    scanner.settings.halftoneIndex = 2;
    scanner.settings.halftoneOverride = row.halftoneOverride;
    scanner.settings.optionS = row.optionS;
    const Bytes block = With(ParameterBlock(), 32, {row.halftone});
    scanner.CheckParameters(With(block, 34, {row.enhancement}));
  }
}

TEST_CASE("the override byte is the threshold, else n for gamma code 4 with optionS") {
  struct Row {
    std::uint16_t threshold;
    std::uint8_t gammaCode;
    std::uint32_t optionS;
    std::uint8_t byte33;
  };
  for (const Row& row : {Row{0xFFFF, 4, 1, 0x6E}, Row{0xFFFF, 4, 0, 0}, Row{0xFFFF, 3, 1, 0},
                         Row{0x1234, 4, 1, 0x34}, Row{0x0000, 4, 1, 0}, Row{0x00FF, 0, 0, 0xFF},
                         Row{0xFFFE, 0, 0, 0xFE}}) {
    CAPTURE(row.threshold);
    CAPTURE(row.gammaCode);
    ParameterScanner scanner;
    scanner.settings.thresholdT = row.threshold;
    scanner.settings.customGammaCode = row.gammaCode;
    scanner.settings.optionS = row.optionS;
    const Bytes block = With(ParameterBlock(), 34, {static_cast<std::uint8_t>(row.optionS)});
    scanner.CheckParameters(With(block, 33, {row.byte33}));
  }
}

TEST_CASE_FIXTURE(ParameterScanner, "the override byte stays until another scan sets it") {
  settings.thresholdT = 0x0055;
  CheckParameters(With(ParameterBlock(), 33, {0x55}));
  settings.thresholdT = 0xFFFF;
  CheckParameters(With(ParameterBlock(), 33, {0x55}));
}

TEST_CASE("without tables, gamma is sent as its code") {
  struct Row {
    std::uint16_t gamma;
    std::uint8_t code;
  };
  for (const Row& row : {Row{100, 0x01}, Row{220, 0x02}, Row{300, 0x00}, Row{280, 0x10},
                         Row{250, 0x20}, Row{180, 0x02}, Row{0, 0x02}}) {
    CAPTURE(row.gamma);
    ParameterScanner scanner;
    scanner.settings.gamma = row.gamma;
    scanner.CheckParameters(With(ParameterBlock(), 29, {row.code}));
  }
}

TEST_CASE("brightness and sharpness are divided toward zero") {
  struct Row {
    std::int32_t brightness, sharpness;
    std::uint8_t byte30, byte35;
  };
  constexpr auto kLowest = std::numeric_limits<std::int32_t>::min();
  for (const Row& row : {Row{999, 999, 3, 1}, Row{-999, -999, 0xFD, 0xFF}, Row{332, 499, 0, 0},
                         Row{-332, -499, 0, 0}, Row{1000, 1000, 3, 2},
                         Row{-1000, -1000, 0xFD, 0xFE}, Row{333 * 300, 500 * 300, 0x2C, 0x2C},
                         // -6448899 and -4294967
                         Row{kLowest, kLowest, 0xFD, 0xC9}}) {
    CAPTURE(row.brightness);
    ParameterScanner scanner;
    scanner.settings.brightness = row.brightness;
    scanner.settings.sharpness = row.sharpness;
    const Bytes block = With(ParameterBlock(), 30, {row.byte30});
    scanner.CheckParameters(With(block, 35, {row.byte35}));
  }
}

TEST_CASE_FIXTURE(ParameterScanner, "mirror is sent as 1 and paramG as it is") {
  settings.mirrorImage = 0x100;
  settings.paramG = 0xC3;
  CheckParameters(With(With(ParameterBlock(), 36, {0x01}), 27, {0xC3}));
}

TEST_CASE_FIXTURE(ParameterScanner, "gamma tables go out as R, G and B, before the parameters") {
  settings.customGamma = 1;
  settings.customGammaCode = 0x04;
  FillTable(settings.gammaTableR, 1);
  FillTable(settings.gammaTableG, 2);
  FillTable(settings.gammaTableB, 3);
  device.ExpectBlock(0x1B, 'z', Text("R") + Ramp(1, 256));
  device.ExpectBlock(0x1B, 'z', Text("G") + Ramp(2, 256));
  device.ExpectBlock(0x1B, 'z', Text("B") + Ramp(3, 256));
  CheckParameters(With(ParameterBlock(), 29, {0x04}));
}

TEST_CASE_FIXTURE(ParameterScanner, "a single-channel scan sends the red table alone, as M") {
  settings.customGamma = 1;
  settings.customGammaCode = 0x05;
  settings.monoScan = 1;
  settings.dropoutChannel = 2;
  settings.colorCorrection = 1;
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
  settings.monoScan = 1;
  settings.colorCorrection = 0;
  CheckParameters(With(ParameterBlock(), 31, {0x01}));
  settings.monoScan = 0;
  CheckParameters(ParameterBlock());
}

TEST_CASE("zoom scales the resolution, rounded half up") {
  struct Row {
    std::uint16_t resolution, zoom;
    const char* sent;
  };
  for (const Row& row :
       {Row{300, 100, "2C 01 00 00"}, Row{300, 50, "96 00 00 00"}, Row{101, 50, "33 00 00 00"},
        Row{33, 101, "21 00 00 00"}, Row{65535, 65535, "0A 57 8F 02"}}) {
    CAPTURE(row.resolution);
    ParameterScanner scanner;
    scanner.settings.resolution = row.resolution;
    scanner.settings.zoom = row.zoom;
    const Bytes resolution = FromHex(row.sent);
    scanner.CheckParameters(With(ParameterBlock(), 0, resolution + resolution));
  }
}

}  // namespace
}  // namespace pmddb832::tests::extended
