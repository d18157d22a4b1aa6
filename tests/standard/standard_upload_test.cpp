#include <numeric>

#include "tests/standard/standard_fixture.h"

// The settings that are sent before a scan: which commands, in which order, with which values.

namespace pmddb832::tests::standard {
namespace {

// At each of the levels, settings as Set() takes them, and what the upload then has in place of the
// fixture's commands, as UploadOf() takes it.
struct UploadRow {
  std::string settings;
  std::string_view commands;
};

void CheckUploads(const std::vector<std::string_view>& levels, const std::vector<UploadRow>& rows) {
  for (const UploadRow& row : rows) {
    CAPTURE(row.settings);
    for (const std::string_view level : levels) {
      CAPTURE(level);
      StandardScanner scanner(level);
      scanner.Set(row.settings);
      scanner.Upload(UploadOf(level, row.commands));
    }
  }
}

TEST_CASE_FIXTURE(StandardScanner, "standard: each command waits for ACK, its block for another") {
  level = "B3";
  REQUIRE(Open(Identity("B3")) == 1);
  InitAcquire();
  device.Converse(
      "> 1B 46 < 02 00 00 00 > 1B 43 < 06 > 00 < 06 > 1B 44 < 06 > 08 < 06"
      "> 1B 42 < 06 > 01 < 06 > 1B 5A < 06 > 02 < 06 > 1B 4C < 06 > 00 < 06"
      "> 1B 4D < 06 > 00 < 06 > 1B 52 < 06 > 64 00 64 00 < 06 > 1B 48 < 06 > 64 64 < 06"
      "> 1B 41 < 06 > 00 00 00 00 10 00 04 00 < 06 >!");
  Acquire(4096);
}

TEST_CASE("standard: each level has its sequence of commands") {
  CheckUploads({"B3", "B4", "B5", "A5", "B6", "B7", "B8", "B9"}, {{"", ""}});
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
  for (const std::string_view query : {">!", "> 1B 46 <!"}) {
    CAPTURE(query);
    StandardScanner scanner("B3");
    scanner.InitAcquire();
    scanner.device.Converse(query).Converse("> 1B 47 <!");
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
  CheckUploads({"A5"}, {{"monoScan=1 dropoutChannel=0", "C 00"},
                        {"monoScan=1 dropoutChannel=1", "C 10"},
                        {"monoScan=1 dropoutChannel=2", "C 20"},
                        {"monoScan=1 dropoutChannel=3", "C 30"},
                        {"monoScan=1 dropoutChannel=4", "C 00"},
                        {"monoScan=1 dropoutChannel=0x101", "C 00"}});
}

TEST_CASE("standard: each pixel type has its colour mode and depth") {
  CheckUploads({"B4"}, {{"pixelType=0", "C 00, D 01"},
                        {"pixelType=1", "C 00, D 04"},
                        {"pixelType=3", "C 02, D 01"},
                        {"pixelType=4", "C 02, D 03"},
                        {"pixelType=5", "C 13, D 08"},
                        {"pixelType=6", "C 13, D 04"},
                        {"pixelType=7", "C 13, D 0C"},
                        {"pixelType=8", "C 00, D 0C"}});
}

TEST_CASE("standard: the deep types are sent as 12 bits in preview mode too") {
  CheckUploads({"B4"}, {{"pixelType=7 previewMode=1", "C 13, D 0C"},
                        {"pixelType=8 previewMode=1", "C 00, D 0C"}});
}

TEST_CASE("standard: colour mode 2 is sent as 1 where the host asks for it with 1") {
  CheckUploads({"B4"}, {{"pixelType=4 altColorMode=0", "C 02, D 03"},
                        {"pixelType=4 altColorMode=1", "C 01, D 03"},
                        {"pixelType=4 altColorMode=2", "C 02, D 03"}});
}

TEST_CASE("standard: other colour modes have no alternative") {
  CheckUploads({"B4"}, {{"pixelType=5 altColorMode=1", "C 13, D 08"}});
}

TEST_CASE("standard: the halftone is sent by its row, and row 0 for a row that is not there") {
  CheckUploads({"B4", "B6"}, {{"halftoneIndex=0", "B 01"},
                              {"halftoneIndex=1", "B 00"},
                              {"halftoneIndex=2", "B 10"},
                              {"halftoneIndex=3", "B 20"},
                              {"halftoneIndex=4", "B 80"},
                              {"halftoneIndex=5", "B 90"},
                              {"halftoneIndex=6", "B A0"},
                              {"halftoneIndex=7", "B B0"},
                              {"halftoneIndex=8", "B 03"},
                              {"halftoneIndex=9", "B 00"},
                              {"halftoneIndex=10", "B 01"},
                              {"halftoneIndex=-1", "B 01"}});
}

TEST_CASE("standard: the halftone override is sent from level B5 on") {
  CheckUploads({"B3", "B4"}, {{"halftoneOverride=1", "B 01"}});
  CheckUploads({"B5", "A5", "B6", "B8"}, {{"halftoneOverride=1", "B 03"}});
}

TEST_CASE("standard: ESC s is 1 with a halftone of the table and 2 with the override") {
  CheckUploads({"A5", "B6", "B8"},
               {{"optionS=7", "B 01, s 01"}, {"optionS=7 halftoneOverride=1", "B 03, s 02"}});
  CheckUploads({"B5"}, {{"optionS=7 halftoneOverride=1", "B 03"}});
}

TEST_CASE_FIXTURE(OpenB8, "standard: at level B8 the low byte of the threshold is sent") {
  settings.thresholdT = 0x1234;
  Upload(Replaced(UploadOf("B8"), "s 00, Z", "s 00, t 34, Z"));
}

TEST_CASE("standard: below level B8 no threshold is sent") {
  CheckUploads({"B7"}, {{"thresholdT=0x1234", ""}});
}

TEST_CASE("standard: the gamma code comes from the table of gammas") {
  CheckUploads({"B4"}, {{"gamma=100", "Z 01"},
                        {"gamma=220", "Z 02"},
                        {"gamma=300", "Z 00"},
                        {"gamma=280", "Z 10"},
                        {"gamma=250", "Z 20"},
                        {"gamma=180", "Z 02"}});
}

TEST_CASE("standard: brightness is sent divided by 333, toward zero") {
  CheckUploads({"B4"}, {{"brightness=-700", "L FE"},
                        {"brightness=-333", "L FF"},
                        {"brightness=-332", "L 00"},
                        {"brightness=999", "L 03"},
                        {"brightness=85248", "L 00"}});  // 256
}

TEST_CASE("standard: sharpness is sent divided by 500, toward zero, and paramG behind it") {
  CheckUploads({"B4"}, {{"sharpness=-999 paramG=7", "Q FF, g 07"},
                        {"sharpness=1000 paramG=7", "Q 02, g 07"},
                        {"sharpness=499 paramG=7", "Q 00, g 07"}});
}

// An upload at the level with three different tables and a matrix in the settings, which has `sent`
// in place of `part`.
void CheckTables(std::string_view level, const std::string& members, std::string_view part,
                 const std::string& sent) {
  CAPTURE(level);
  StandardScanner scanner(level);
  ScannerSettings& settings = scanner.settings;
  std::iota(std::begin(settings.gammaTableR), std::end(settings.gammaTableR), std::uint8_t{1});
  std::iota(std::begin(settings.gammaTableG), std::end(settings.gammaTableG), std::uint8_t{2});
  std::iota(std::begin(settings.gammaTableB), std::end(settings.gammaTableB), std::uint8_t{3});
  std::iota(std::begin(settings.colorMatrix), std::end(settings.colorMatrix), std::uint8_t{0xF8});
  scanner.Set(members);
  scanner.Upload(Replaced(UploadOf(level), part, sent));
}

std::string Table(std::uint8_t prefix, std::uint8_t first) {
  std::string text = "z " + Hex({prefix});
  for (const std::uint8_t byte : Ramp(first, 256)) text += ' ' + Hex({byte});
  return text + ", ";
}

TEST_CASE("standard: custom gamma sends three tables, the host's code and no ESC L") {
  for (const std::string_view level : {"B4", "B5", "B8"}) {
    CheckTables(level, "customGamma=1 customGammaCode=4", "Z 02, L 00",
                Table('R', 1) + Table('G', 2) + Table('B', 3) + "Z 04");
  }
}

TEST_CASE("standard: level A5 and a single-channel scan send one gamma table") {
  const std::string sent = Table('M', 1) + "Z 04";
  CheckTables("A5", "customGamma=1 customGammaCode=4", "Z 02, L 00", sent);
  CheckTables("B4", "customGamma=1 customGammaCode=4 monoScan=1", "Z 02, L 00, M 00", sent);
}

TEST_CASE("standard: level B3 has no custom gamma and no colour matrix") {
  CheckTables("B3", "customGamma=1 customGammaCode=4 colorCorrection=1", "", "");
}

TEST_CASE("standard: the colour matrix is sent without a prefix, and ESC M 1 behind it") {
  for (const std::string_view level : {"B4", "B5", "B8"}) {
    CheckTables(level, "colorCorrection=1", "M 00", "m F8 F9 FA FB FC FD FE FF 00, M 01");
  }
  CheckTables("A5", "colorCorrection=1", "", "");
}

TEST_CASE("standard: a single-channel scan has no colour correction at all") {
  CheckUploads({"B4"}, {{"monoScan=1 colorCorrection=1", "-M"}});
}

TEST_CASE("standard: ESC K says whether the image is mirrored") {
  CheckUploads({"B5"}, {{"mirrorImage=5", "K 01"}});
  CheckUploads({"B4"}, {{"mirrorImage=5", ""}});
}

TEST_CASE("standard: the resolution goes out whole, of the zoom its low byte") {
  CheckUploads({"B4"}, {{"resolution=0x0201 zoom=0x0110", "R 01 02 01 02, H 10 10"}});
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
