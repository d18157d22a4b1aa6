#include "tests/extended/extended_fixture.h"

namespace pmddb832::tests::extended {
namespace {

// An open scanner of level B8, which has focus commands.
struct FocusScanner : ExtendedScanner {
  FocusScanner() { REQUIRE(Open() == 1); }

  // An automatic focus, and how the scanner answers it behind the parameters.
  std::uint8_t FocusBy(std::string_view conversation) {
    AcceptParameters();
    device.Converse(conversation);
    const std::uint8_t position = PMSetFocus(1, 0x12);
    CHECK(PMGetScanError() == 0);
    CHECK(system.sleptMilliseconds == 20000);
    return position;
  }
};

// ESC p FF and ESC q, without the answer.
const std::string kFocus = "> 1B 70 < 06 > FF < 06 > 1B 71";

TEST_CASE("a scanner of another level keeps its focus: the position comes back, nothing is sent") {
  for (const std::string_view level : {"B4", "B5", "B6", "B7"}) {
    for (const std::uint32_t mode : {0u, 1u}) {
      CAPTURE(level);
      CAPTURE(mode);
      ExtendedScanner scanner;
      REQUIRE(scanner.Open(With(Identity(), 0, Text(level))) == 1);
      CHECK(PMSetFocus(mode, 0xC3) == 0xC3);
      CHECK(scanner.system.sleptMilliseconds == 0);
    }
  }
}

TEST_CASE_FIXTURE(FocusScanner, "a position is sent behind ESC p, 40 more than the host's") {
  device.Converse("> 1B 70 < 06 > 52 < 06 > 1B 70 < 06 > 40 < 06");
  CHECK(PMSetFocus(0, 0x12) == 0x12);
  CHECK(PMSetFocus(0, 0x00) == 0x00);
  CHECK(system.sleptMilliseconds == 0);
}

TEST_CASE_FIXTURE(FocusScanner, "positions wrap at 8 bits") {
  device.Converse("> 1B 70 < 06 > 3F < 06");
  CHECK(PMSetFocus(0, 0xFF) == 0xFF);
}

TEST_CASE_FIXTURE(FocusScanner, "position 191 is sent, but reads as unknown") {
  device.Converse("> 1B 70 < 06 > FF < 06");
  CHECK(PMSetFocus(0, 191) == 156);
}

TEST_CASE_FIXTURE(FocusScanner, "a position that is not acknowledged or not carried is unknown") {
  for (const std::string_view conversation :
       {">!", "> 1B 70 <!", "> 1B 70 < 15", "> 1B 70 < 06 >!", "> 1B 70 < 06 > 40 < 15"}) {
    CAPTURE(conversation);
    device.Converse(conversation);
    CHECK(PMSetFocus(0, 0) == 156);
    CHECK(PMGetScanError() == 0);
  }
}

TEST_CASE_FIXTURE(FocusScanner, "automatic focus sets up, asks, waits 20 seconds and reads") {
  CHECK(FocusBy("> 1B 70 < 06 > FF < 06 > 1B 71 < 02 00 02 00 < 00 4A") == 0x0A);
}

TEST_CASE_FIXTURE(FocusScanner, "any mode but 0 is automatic") {
  AcceptParameters();
  device.Converse(kFocus + "< 02 00 02 00 < 00 40");
  CHECK(PMSetFocus(0xFFFFFF00, 0x12) == 0x00);
}

TEST_CASE_FIXTURE(FocusScanner, "automatic focus uses the settings' area and pixel type of now") {
  InitAcquire();
  Set("areaWidthPx=32 areaHeightPx=5 pixelType=8");
  AcceptParameters(With(With(ParameterBlock(), 16, Word(32) + Word(5)), 25, {0x0C}));
  device.Converse(kFocus + "< 02 00 02 00 < 00 41");
  CHECK(PMSetFocus(1, 0) == 1);
}

TEST_CASE("automatic focus goes on without an acknowledge of its start, after the wait") {
  for (const std::string start : {">!", "> 1B 70 < 15", "> 1B 70 < 06 > FF < 15"}) {
    CAPTURE(start);
    CHECK(FocusScanner().FocusBy(start + "> 1B 71 < 02 00 02 00 < FE 50") == 0x10);
  }
}

TEST_CASE("a focus reply tells a position only when it is whole and its first bit is clear") {
  struct Row {
    std::string answer;
    std::uint8_t result;
  };
  std::string longest;
  for (int i = 0; i < 150; ++i) longest += "50";
  for (const Row& row : {Row{"< 02 00 02 00 < 01 50", 156}, Row{"< 02 00 02 00 < FF 50", 156},
                         Row{"< 02 00 02 00 < FE 50", 0x10}, Row{"< 02 FF 02 00 < 00 50", 0x10},
                         Row{"< 02 00 02 00 < 00 FF", 156}, Row{"< 02 00 02 00 < 00 3F", 0xFF},
                         Row{"< 02 00 05 00 < 00 50 01 02 03", 0x10},
                         // the longest, and too short to hold a position
                         Row{"< 02 00 96 00 <" + longest, 0x10}, Row{"< 02 00 00 00 <", 156},
                         Row{"< 02 00 01 00 < 00", 156}}) {
    CAPTURE(row.answer);
    CHECK(FocusScanner().FocusBy(kFocus + row.answer) == row.result);
  }
}

TEST_CASE("a focus header that is wrong or announces too much is not read on") {
  for (const std::string header :
       {"< 06 00 02 00", "< 15 00 02 00", "< 00 02 02 00", "< 02 00 97 00", "< 02 00 FF 7F",
        "< 02 00 00 80", "< 02 00 FF FF"}) {
    CAPTURE(header);
    CHECK(FocusScanner().FocusBy(kFocus + header) == 156);
  }
}

TEST_CASE("a focus answer that cannot be asked for or read is unknown") {
  for (const std::string answer : {">!", "> 1B 71 <!", "> 1B 71 < 02 00 02 00 <!"}) {
    CAPTURE(answer);
    CHECK(FocusScanner().FocusBy("> 1B 70 < 06 > FF < 06" + answer) == 156);
  }
}

TEST_CASE_FIXTURE(FocusScanner, "parameters that fail end automatic focus with code 22, at once") {
  device.Expect({0x1C, 0x57}).Reply({kNak});
  CHECK(PMSetFocus(1, 0x12) == 0x12);
  CHECK(PMGetScanError() == 22);
  CHECK(system.sleptMilliseconds == 0);
}

TEST_CASE_FIXTURE(FocusScanner,
                  "an area that is refused ends automatic focus before any transfer") {
  settings.areaWidthPx = 0;
  CHECK(PMSetFocus(1, 0x12) == 0x12);
  CHECK(PMGetScanError() == 22);
}

TEST_CASE_FIXTURE(FocusScanner, "position 191 with failing parameters reads as unknown") {
  device.Expect({0x1C, 0x57}).Reply({kNak});
  CHECK(PMSetFocus(1, 191) == 156);
}

}  // namespace
}  // namespace pmddb832::tests::extended
