#include <numeric>

#include "tests/standard/standard_fixture.h"

// The settings that are sent before a scan: which commands, in which order, with which values.

namespace pmddb832::tests::standard {
namespace {

std::string Upload(std::string_view level, std::string_view part, std::string_view by) {
  return Replaced(UploadOf(level), part, by);
}

// The upload of a scanner whose settings were changed differs from the fixture's in one part.
void CheckUpload(std::string_view level, const std::function<void(ScannerSettings&)>& change,
                 std::string_view part, std::string_view by) {
  CAPTURE(level);
  StandardScanner scanner(level);
  change(scanner.settings);
  scanner.Upload(Upload(level, part, by));
}

const auto kNoChange = [](ScannerSettings&) {};

TEST_CASE_FIXTURE(StandardScanner, "standard: each command waits for ACK, its block for another") {
  level = "B3";
  REQUIRE(Open(Identity("B3")) == 1);
  InitAcquire();
  device.Expect({0x1B, 0x46}).Reply({0x02, 0x00, 0x00, 0x00});
  device.Expect({0x1B, 0x43}).Reply({0x06}).Expect({0x00}).Reply({0x06});
  device.Expect({0x1B, 0x44}).Reply({0x06}).Expect({0x08}).Reply({0x06});
  device.Expect({0x1B, 0x42}).Reply({0x06}).Expect({0x01}).Reply({0x06});
  device.Expect({0x1B, 0x5A}).Reply({0x06}).Expect({0x02}).Reply({0x06});
  device.Expect({0x1B, 0x4C}).Reply({0x06}).Expect({0x00}).Reply({0x06});
  device.Expect({0x1B, 0x4D}).Reply({0x06}).Expect({0x00}).Reply({0x06});
  device.Expect({0x1B, 0x52}).Reply({0x06}).Expect({0x64, 0x00, 0x64, 0x00}).Reply({0x06});
  device.Expect({0x1B, 0x48}).Reply({0x06}).Expect({0x64, 0x64}).Reply({0x06});
  device.Expect({0x1B, 0x41}).Reply({0x06}).Expect({0, 0, 0, 0, 0x10, 0, 0x04, 0}).Reply({0x06});
  device.FailNextWrite();
  Acquire(4096);
}

TEST_CASE("standard: each level has its sequence of commands") {
  for (const char* level : {"B3", "B4", "B5", "A5", "B6", "B7", "B8", "B9"}) {
    CheckUpload(level, kNoChange, "", "");
  }
}

TEST_CASE_FIXTURE(StandardScanner, "standard: a NAK or a lost command does not end the upload") {
  level = "B3";
  REQUIRE(Open(Identity("B3")) == 1);
  InitAcquire();
  device.Expect({0x1B, 0x46}).Reply({0x15, 0xFF, 0xFF, 0xFF});  // not looked at
  device.Expect({0x1B, 0x43}).Reply({kNak});                    // so its block is not sent
  device.Expect({0x1B, 0x44}).FailNextRead();
  device.FailNextWrite();  // ESC B: no acknowledge is waited for
  device.Expect({0x1B, 0x5A}).Reply({0x06}).FailNextWrite();
  device.Expect({0x1B, 0x4C}).Reply({0x06}).Expect({0x00}).Reply({kNak});
  device.ExpectBlock(0x1B, 'M', {0x00}).ExpectBlock(0x1B, 'R', {0x64, 0x00, 0x64, 0x00});
  device.ExpectBlock(0x1B, 'H', {0x64, 0x64});
  device.ExpectBlock(0x1B, 'A', {0, 0, 0, 0, 0x10, 0, 0x04, 0});
  device.FailNextWrite();
  Acquire(4096);
  CHECK(PMGetScanError() == 9);
}

TEST_CASE("standard: without an answer to ESC F nothing is sent, and the scan goes on") {
  for (const bool sent : {false, true}) {
    StandardScanner scanner("B3");
    scanner.InitAcquire();
    if (sent) scanner.device.Expect({0x1B, 0x46}).FailNextRead();
    if (!sent) scanner.device.FailNextWrite();
    scanner.device.Expect({0x1B, 0x47}).FailNextRead();
    scanner.Acquire(4096);
    CHECK(PMGetScanError() == 9);
  }
}

TEST_CASE("standard: with an option unit its selection is sent first") {
  for (const std::uint8_t source : Bytes{0, 1, 2, 200}) {
    StandardScanner scanner("B4", Status(0, 0x80));
    scanner.settings.scanSource = source;
    scanner.Upload("e " + Hex({source}) + ", " + UploadOf("B4"));
  }
}

TEST_CASE("standard: a single-channel scan sends its channel as colour mode") {
  for (const auto& [channel, mode] :
       {std::pair{1, "C 10"}, std::pair{2, "C 20"}, std::pair{3, "C 30"}, std::pair{0, "C 00"},
        std::pair{4, "C 00"}, std::pair{0x101, "C 00"}}) {
    const auto change = [channel = channel](ScannerSettings& settings) {
      settings.monoScan = 1;
      settings.dropoutChannel = static_cast<std::uint16_t>(channel);
    };
    CheckUpload("A5", change, "C 00", mode);
  }
}

TEST_CASE("standard: each pixel type has its colour mode and depth") {
  struct Row {
    std::uint32_t type;
    std::string_view sent;
  };
  for (const Row& row :
       {Row{0, "C 00, D 01"}, Row{1, "C 00, D 04"}, Row{3, "C 02, D 01"}, Row{4, "C 02, D 03"},
        Row{5, "C 13, D 08"}, Row{6, "C 13, D 04"}, Row{7, "C 13, D 0C"}, Row{8, "C 00, D 0C"}}) {
    const auto change = [row](ScannerSettings& settings) { settings.pixelType = row.type; };
    CheckUpload("B4", change, "C 00, D 08", row.sent);
  }
}

TEST_CASE("standard: the deep types are sent as 12 bits in preview mode too") {
  for (const std::uint32_t type : {7u, 8u}) {
    const auto change = [type](ScannerSettings& settings) {
      settings.pixelType = type;
      settings.previewMode = 1;
    };
    CheckUpload("B4", change, "C 00, D 08", type == 7 ? "C 13, D 0C" : "C 00, D 0C");
  }
}

TEST_CASE("standard: colour mode 2 is sent as 1 where the host asks for it with 1") {
  for (const std::uint32_t alternative : {0u, 1u, 2u}) {
    const auto change = [alternative](ScannerSettings& settings) {
      settings.pixelType = 4;
      settings.altColorMode = alternative;
    };
    CheckUpload("B4", change, "C 00, D 08", alternative == 1 ? "C 01, D 03" : "C 02, D 03");
  }
}

TEST_CASE("standard: other colour modes have no alternative") {
  const auto change = [](ScannerSettings& settings) {
    settings.pixelType = 5;
    settings.altColorMode = 1;
  };
  CheckUpload("B4", change, "C 00, D 08", "C 13, D 08");
}

TEST_CASE("standard: the halftone is sent by its row, and row 0 for a row that is not there") {
  struct Row {
    std::int32_t index;
    std::string_view sent;
  };
  for (const Row& row : {Row{0, "B 01"}, Row{1, "B 00"}, Row{2, "B 10"}, Row{3, "B 20"},
                         Row{4, "B 80"}, Row{5, "B 90"}, Row{6, "B A0"}, Row{7, "B B0"},
                         Row{8, "B 03"}, Row{9, "B 00"}, Row{10, "B 01"}, Row{-1, "B 01"}}) {
    const auto change = [row](ScannerSettings& settings) { settings.halftoneIndex = row.index; };
    CheckUpload("B4", change, "B 01", row.sent);
    CheckUpload("B6", change, "B 01", row.sent);
  }
}

TEST_CASE("standard: the halftone override is sent from level B5 on") {
  const auto change = [](ScannerSettings& settings) { settings.halftoneOverride = 1; };
  for (const char* level : {"B3", "B4"}) CheckUpload(level, change, "B 01", "B 01");
  for (const char* level : {"B5", "A5", "B6", "B8"}) CheckUpload(level, change, "B 01", "B 03");
}

TEST_CASE("standard: ESC s is 1 with a halftone of the table and 2 with the override") {
  const auto plain = [](ScannerSettings& settings) { settings.optionS = 7; };
  const auto overridden = [](ScannerSettings& settings) {
    settings.optionS = 7;
    settings.halftoneOverride = 1;
  };
  for (const char* level : {"A5", "B6", "B8"}) {
    CheckUpload(level, plain, "B 01, s 00", "B 01, s 01");
    CheckUpload(level, overridden, "B 01, s 00", "B 03, s 02");
  }
  CheckUpload("B5", overridden, "B 01", "B 03");
}

TEST_CASE("standard: the low byte of the threshold is sent at level B8 only") {
  const auto change = [](ScannerSettings& settings) { settings.thresholdT = 0x1234; };
  CheckUpload("B8", change, "s 00, Z", "s 00, t 34, Z");
  CheckUpload("B7", change, "", "");
}

TEST_CASE("standard: the gamma code comes from the table of gammas") {
  struct Row {
    std::uint16_t gamma;
    std::string_view sent;
  };
  for (const Row& row : {Row{100, "Z 01"}, Row{220, "Z 02"}, Row{300, "Z 00"}, Row{280, "Z 10"},
                         Row{250, "Z 20"}, Row{180, "Z 02"}}) {
    const auto change = [row](ScannerSettings& settings) { settings.gamma = row.gamma; };
    CheckUpload("B4", change, "Z 02", row.sent);
  }
}

TEST_CASE("standard: brightness is sent divided by 333, toward zero") {
  struct Row {
    std::int32_t brightness;
    std::string_view sent;
  };
  for (const Row& row : {Row{-700, "L FE"}, Row{-333, "L FF"}, Row{-332, "L 00"}, Row{999, "L 03"},
                         Row{333 * 256, "L 00"}}) {
    const auto change = [row](ScannerSettings& settings) { settings.brightness = row.brightness; };
    CheckUpload("B4", change, "L 00", row.sent);
  }
}

TEST_CASE("standard: sharpness is sent divided by 500, toward zero, and paramG behind it") {
  struct Row {
    std::int32_t sharpness;
    std::string_view sent;
  };
  for (const Row& row :
       {Row{-999, "Q FF, g 07"}, Row{1000, "Q 02, g 07"}, Row{499, "Q 00, g 07"}}) {
    const auto change = [row](ScannerSettings& settings) {
      settings.sharpness = row.sharpness;
      settings.paramG = 7;
    };
    CheckUpload("B4", change, "Q 00, g 00", row.sent);
  }
}

// Settings with three different tables, and their bytes as they are sent.
void FillTables(ScannerSettings& settings) {
  settings.customGamma = 1;
  settings.customGammaCode = 0x04;
  std::iota(std::begin(settings.gammaTableR), std::end(settings.gammaTableR), std::uint8_t{1});
  std::iota(std::begin(settings.gammaTableG), std::end(settings.gammaTableG), std::uint8_t{2});
  std::iota(std::begin(settings.gammaTableB), std::end(settings.gammaTableB), std::uint8_t{3});
}

std::string Table(std::uint8_t prefix, std::uint8_t first) {
  std::string text = "z " + Hex({prefix});
  for (const std::uint8_t byte : Ramp(first, 256)) text += ' ' + Hex({byte});
  return text + ", ";
}

TEST_CASE("standard: custom gamma sends three tables, the host's code and no ESC L") {
  const std::string sent = Table('R', 1) + Table('G', 2) + Table('B', 3) + "Z 04";
  for (const char* level : {"B4", "B5", "B8"}) CheckUpload(level, FillTables, "Z 02, L 00", sent);
}

TEST_CASE("standard: level A5 and a single-channel scan send one gamma table") {
  const std::string sent = Table('M', 1) + "Z 04";
  CheckUpload("A5", FillTables, "Z 02, L 00", sent);
  const auto change = [](ScannerSettings& settings) {
    FillTables(settings);
    settings.monoScan = 1;
  };
  CheckUpload("B4", change, "Z 02, L 00, M 00", sent);
}

TEST_CASE("standard: level B3 has no custom gamma and no colour matrix") {
  const auto change = [](ScannerSettings& settings) {
    FillTables(settings);
    settings.colorCorrection = 1;
  };
  CheckUpload("B3", change, "", "");
}

TEST_CASE("standard: the colour matrix is sent without a prefix, and ESC M 1 behind it") {
  const auto change = [](ScannerSettings& settings) {
    settings.colorCorrection = 1;
    std::iota(std::begin(settings.colorMatrix), std::end(settings.colorMatrix), std::uint8_t{0xF8});
  };
  for (const char* level : {"B4", "B5", "B8"}) {
    CheckUpload(level, change, "M 00", "m F8 F9 FA FB FC FD FE FF 00, M 01");
  }
  CheckUpload("A5", change, "", "");
}

TEST_CASE("standard: a single-channel scan has no colour correction at all") {
  const auto change = [](ScannerSettings& settings) {
    settings.monoScan = 1;
    settings.colorCorrection = 1;
  };
  CheckUpload("B4", change, "M 00, ", "");
}

TEST_CASE("standard: ESC K says whether the image is mirrored") {
  const auto change = [](ScannerSettings& settings) { settings.mirrorImage = 5; };
  CheckUpload("B5", change, "K 00", "K 01");
  CheckUpload("B4", change, "", "");
}

TEST_CASE("standard: the resolution goes out whole, of the zoom its low byte") {
  StandardScanner scanner("B4");
  scanner.settings.resolution = 0x0201;
  scanner.settings.zoom = 0x0110;
  scanner.Upload(Upload("B4", "R 64 00 64 00, H 64 64", "R 01 02 01 02, H 10 10"));
}

TEST_CASE("standard: a pending error stops a focus upload at level B6 behind ESC e") {
  for (const bool stops : {false, true}) {
    const char* level = stops ? "B6" : "B5";
    StandardScanner scanner(level, Status(0, 0x80));
    scanner.settings.commandLevel = 8;  // as a level with focus commands would have
    scanner.settings.areaWidthPx = 0;
    scanner.InitAcquire();  // leaves code 1
    scanner.settings.areaWidthPx = 16;
    scanner.AcceptUpload(stops ? "e 00" : "e 00, " + UploadOf(level));
    scanner.device.ExpectBlock(0x1B, 'p', {0xFF}).FailNextWrite();
    CHECK(PMSetFocus(1, 0) == 156);
    CHECK(PMGetScanError() == 1);
  }
}

}  // namespace
}  // namespace pmddb832::tests::standard
