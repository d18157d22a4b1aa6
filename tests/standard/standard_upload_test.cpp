#include <numeric>

#include "tests/standard/standard_fixture.h"

// The settings that are sent before a scan: which commands, in which order, with which values.

namespace pmddb832::tests::standard {
namespace {

using Change = void (*)(ScannerSettings& settings);

// At each of the levels, an upload with changed settings differs from the fixture's in one part.
struct UploadRow {
  std::vector<std::string_view> levels;
  Change change;
  std::string_view part, by;
};

void CheckUploads(const std::vector<UploadRow>& rows) {
  for (const UploadRow& row : rows) {
    const std::string sent(row.by);
    CAPTURE(sent);
    for (const std::string_view level : row.levels) {
      StandardScanner scanner(level);
      row.change(scanner.settings);
      scanner.Upload(Replaced(UploadOf(level), row.part, row.by));
    }
  }
}

// Values of one member, and what an upload at level B4 has in the place of `part`.
template <class Member>
void CheckMember(Member ScannerSettings::*member, std::string_view part,
                 const std::vector<std::pair<Member, std::string_view>>& rows) {
  for (const auto& row : rows) {
    CAPTURE(row.first);
    OpenB4 scanner;
    scanner.settings.*member = row.first;
    scanner.Upload(Replaced(UploadOf("B4"), part, row.second));
  }
}

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
  CheckUploads({{{"B3", "B4", "B5", "A5", "B6", "B7", "B8", "B9"}, [](auto&) {}, "", ""}});
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
    OpenA5 scanner;
    scanner.settings.monoScan = 1;
    scanner.settings.dropoutChannel = static_cast<std::uint16_t>(channel);
    scanner.Upload(Replaced(UploadOf("A5"), "C 00", mode));
  }
}

TEST_CASE("standard: each pixel type has its colour mode and depth") {
  CheckMember(&ScannerSettings::pixelType, "C 00, D 08",
              {{0, "C 00, D 01"},
               {1, "C 00, D 04"},
               {3, "C 02, D 01"},
               {4, "C 02, D 03"},
               {5, "C 13, D 08"},
               {6, "C 13, D 04"},
               {7, "C 13, D 0C"},
               {8, "C 00, D 0C"}});
}

TEST_CASE("standard: the deep types are sent as 12 bits in preview mode too") {
  CheckUploads(
      {{{"B4"}, [](auto& s) { s.pixelType = 7, s.previewMode = 1; }, "C 00, D 08", "C 13, D 0C"},
       {{"B4"}, [](auto& s) { s.pixelType = 8, s.previewMode = 1; }, "C 00, D 08", "C 00, D 0C"}});
}

TEST_CASE("standard: colour mode 2 is sent as 1 where the host asks for it with 1") {
  CheckUploads(
      {{{"B4"}, [](auto& s) { s.pixelType = 4, s.altColorMode = 0; }, "C 00, D 08", "C 02, D 03"},
       {{"B4"}, [](auto& s) { s.pixelType = 4, s.altColorMode = 1; }, "C 00, D 08", "C 01, D 03"},
       {{"B4"}, [](auto& s) { s.pixelType = 4, s.altColorMode = 2; }, "C 00, D 08", "C 02, D 03"}});
}

TEST_CASE("standard: other colour modes have no alternative") {
  CheckUploads(
      {{{"B4"}, [](auto& s) { s.pixelType = 5, s.altColorMode = 1; }, "C 00, D 08", "C 13, D 08"}});
}

TEST_CASE("standard: the halftone is sent by its row, and row 0 for a row that is not there") {
  for (const auto& [row, sent] :
       {std::pair{0, "B 01"}, std::pair{1, "B 00"}, std::pair{2, "B 10"}, std::pair{3, "B 20"},
        std::pair{4, "B 80"}, std::pair{5, "B 90"}, std::pair{6, "B A0"}, std::pair{7, "B B0"},
        std::pair{8, "B 03"}, std::pair{9, "B 00"}, std::pair{10, "B 01"}, std::pair{-1, "B 01"}}) {
    for (const char* level : {"B4", "B6"}) {
      StandardScanner scanner(level);
      scanner.settings.halftoneIndex = row;
      scanner.Upload(Replaced(UploadOf(level), "B 01", sent));
    }
  }
}

TEST_CASE("standard: the halftone override is sent from level B5 on") {
  const auto change = [](ScannerSettings& settings) { settings.halftoneOverride = 1; };
  CheckUploads(
      {{{"B3", "B4"}, change, "B 01", "B 01"}, {{"B5", "A5", "B6", "B8"}, change, "B 01", "B 03"}});
}

TEST_CASE("standard: ESC s is 1 with a halftone of the table and 2 with the override") {
  const auto plain = [](ScannerSettings& settings) { settings.optionS = 7; };
  const auto overridden = [](ScannerSettings& settings) {
    settings.optionS = 7;
    settings.halftoneOverride = 1;
  };
  CheckUploads({{{"A5", "B6", "B8"}, plain, "B 01, s 00", "B 01, s 01"},
                {{"A5", "B6", "B8"}, overridden, "B 01, s 00", "B 03, s 02"},
                {{"B5"}, overridden, "B 01", "B 03"}});
}

TEST_CASE("standard: the low byte of the threshold is sent at level B8 only") {
  const auto change = [](ScannerSettings& settings) { settings.thresholdT = 0x1234; };
  CheckUploads({{{"B8"}, change, "s 00, Z", "s 00, t 34, Z"}, {{"B7"}, change, "", ""}});
}

TEST_CASE("standard: the gamma code comes from the table of gammas") {
  CheckMember(
      &ScannerSettings::gamma, "Z 02",
      {{100, "Z 01"}, {220, "Z 02"}, {300, "Z 00"}, {280, "Z 10"}, {250, "Z 20"}, {180, "Z 02"}});
}

TEST_CASE("standard: brightness is sent divided by 333, toward zero") {
  CheckMember(&ScannerSettings::brightness, "L 00",
              {{-700, "L FE"}, {-333, "L FF"}, {-332, "L 00"}, {999, "L 03"}, {333 * 256, "L 00"}});
}

TEST_CASE("standard: sharpness is sent divided by 500, toward zero, and paramG behind it") {
  for (const auto& [sharpness, sent] :
       {std::pair{-999, "Q FF, g 07"}, std::pair{1000, "Q 02, g 07"},
        std::pair{499, "Q 00, g 07"}}) {
    OpenB4 scanner;
    scanner.settings.sharpness = sharpness;
    scanner.settings.paramG = 7;
    scanner.Upload(Replaced(UploadOf("B4"), "Q 00, g 00", sent));
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
  CheckUploads({{{"B4", "B5", "B8"}, FillTables, "Z 02, L 00", sent}});
}

TEST_CASE("standard: level A5 and a single-channel scan send one gamma table") {
  const std::string sent = Table('M', 1) + "Z 04";
  const auto change = [](ScannerSettings& settings) {
    FillTables(settings);
    settings.monoScan = 1;
  };
  CheckUploads(
      {{{"A5"}, FillTables, "Z 02, L 00", sent}, {{"B4"}, change, "Z 02, L 00, M 00", sent}});
}

TEST_CASE("standard: level B3 has no custom gamma and no colour matrix") {
  const auto change = [](ScannerSettings& settings) {
    FillTables(settings);
    settings.colorCorrection = 1;
  };
  CheckUploads({{{"B3"}, change, "", ""}});
}

TEST_CASE("standard: the colour matrix is sent without a prefix, and ESC M 1 behind it") {
  const auto change = [](ScannerSettings& settings) {
    settings.colorCorrection = 1;
    std::iota(std::begin(settings.colorMatrix), std::end(settings.colorMatrix), std::uint8_t{0xF8});
  };
  CheckUploads({{{"B4", "B5", "B8"}, change, "M 00", "m F8 F9 FA FB FC FD FE FF 00, M 01"},
                {{"A5"}, change, "", ""}});
}

TEST_CASE("standard: a single-channel scan has no colour correction at all") {
  CheckUploads({{{"B4"}, [](auto& s) { s.monoScan = s.colorCorrection = 1; }, "M 00, ", ""}});
}

TEST_CASE("standard: ESC K says whether the image is mirrored") {
  const auto change = [](ScannerSettings& settings) { settings.mirrorImage = 5; };
  CheckUploads({{{"B5"}, change, "K 00", "K 01"}, {{"B4"}, change, "", ""}});
}

TEST_CASE_FIXTURE(OpenB4, "standard: the resolution goes out whole, of the zoom its low byte") {
  settings.resolution = 0x0201;
  settings.zoom = 0x0110;
  Upload(Replaced(UploadOf("B4"), "R 64 00 64 00, H 64 64", "R 01 02 01 02, H 10 10"));
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
