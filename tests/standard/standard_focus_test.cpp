#include "tests/standard/standard_fixture.h"

// PMSetFocus: positions are offset by 0x40 on the wire.

namespace pmddb832::tests::standard {
namespace {

// The upload and the request of automatic focus.
void AcceptAutomaticFocus(StandardScanner& scanner) {
  scanner.AcceptUpload(UploadOf("B8"));
  scanner.device.ExpectBlock(0x1B, 'p', {0xFF});
}

std::uint8_t PositionFor(const Reply& reply) {
  StandardScanner scanner("B8");
  AcceptAutomaticFocus(scanner);
  scanner.Answer('q', reply);
  const std::uint8_t position = PMSetFocus(1, 0);
  CHECK(scanner.system.sleptMilliseconds == 20000);
  return position;
}

TEST_CASE_FIXTURE(OpenB8, "standard: focus is a matter of level code 8 in the settings") {
  for (const std::uint32_t code : {0u, 7u, 9u}) {
    settings.commandLevel = code;
    CHECK(PMSetFocus(0, 17) == 17);
    CHECK(PMSetFocus(1, 0xBF) == 0xBF);
  }
}

TEST_CASE_FIXTURE(OpenB8, "standard: a manual position is sent with its offset and comes back") {
  device.ExpectBlock(0x1B, 'p', {0x51});
  CHECK(PMSetFocus(0, 0x11) == 0x11);
  device.ExpectBlock(0x1B, 'p', {0x3F});
  CHECK(PMSetFocus(0, 0xFF) == 0xFF);
}

TEST_CASE_FIXTURE(OpenB8, "standard: a manual position that is 255 on the wire comes back as 156") {
  device.ExpectBlock(0x1B, 'p', {0xFF});
  CHECK(PMSetFocus(0, 0xBF) == 156);
}

TEST_CASE_FIXTURE(OpenB8,
                  "standard: a manual position comes back also when it was not acknowledged") {
  device.Expect({0x1B, 0x70}).Reply({kNak});
  CHECK(PMSetFocus(0, 0x11) == 0x11);
}

TEST_CASE_FIXTURE(OpenB8,
                  "standard: automatic focus sends the settings, waits 20 seconds and asks") {
  AcceptUpload(UploadOf("B8"));
  device.Converse("> 1B 70 < 06 > FF < 06 > 1B 71 < 02 00 02 00 < 00 45");
  CHECK(PMSetFocus(7, 0) == 5);
  CHECK(system.sleptMilliseconds == 20000);
}

TEST_CASE("standard: the position is the second data byte, where bit 0 of the first is clear") {
  CHECK(PositionFor({{0xFE, 0x30}}) == 0xF0);
  CHECK(PositionFor({{0x01, 0x30}}) == 156);
  CHECK(PositionFor({{0x00, 0xFF}}) == 156);
  CHECK(PositionFor({{0x00, 0x41, 0x99, 0x99}, 0x80}) == 1);
}

TEST_CASE("standard: a focus reply that is too short or too long tells no position") {
  CHECK(PositionFor({{0x00}}) == 156);
  CHECK(PositionFor({Bytes{}}) == 156);
  StandardScanner scanner("B8");
  AcceptAutomaticFocus(scanner);
  scanner.device.Expect({0x1B, 0x71}).Reply({0x02, 0x00, 0x97, 0x00});
  CHECK(PMSetFocus(1, 0) == 156);
}

TEST_CASE_FIXTURE(OpenB8,
                  "standard: automatic focus goes on and waits although nothing is answered") {
  device.Converse("> 1B 46 <! > 1B 70 < 15 > 1B 71 < 15 00 02 00");
  CHECK(PMSetFocus(1, 0) == 156);
  CHECK(system.sleptMilliseconds == 20000);
}

TEST_CASE_FIXTURE(OpenB8, "standard: automatic focus takes area and pixel type from the settings") {
  Set("pixelType=5 areaLeftPx=1 areaTopPx=2 areaWidthPx=24 areaHeightPx=9");
  AcceptUpload(UploadOf("B8", "C 13, A 01 00 02 00 18 00 09 00"));
  device.ExpectBlock(0x1B, 'p', {0xFF}).FailNextWrite();
  CHECK(PMSetFocus(1, 0) == 156);
}

TEST_CASE_FIXTURE(OpenB8, "standard: an area that the upload refuses leaves its code") {
  settings.areaLeftPx = 65536;
  AcceptUpload(UploadOf("B8", "-A"));
  device.ExpectBlock(0x1B, 'p', {0xFF}).FailNextWrite();
  PMSetFocus(1, 0);
  CHECK(PMGetScanError() == 34);
}

TEST_CASE_FIXTURE(StandardScanner, "standard: without an identified scanner focus sends nothing") {
  settings.commandLevel = 8;
  AnswerProbe();
  device.Expect({0x1B, 0x40}).Reply({kNak});
  REQUIRE(PMOpenScanner(&settings) == 0);
  CHECK(PMSetFocus(1, 0) == 156);
  CHECK(system.sleptMilliseconds == 0);
}

}  // namespace
}  // namespace pmddb832::tests::standard
