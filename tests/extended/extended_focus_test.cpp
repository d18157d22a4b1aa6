#include "tests/extended/extended_fixture.h"

namespace pmddb832::tests::extended {
namespace {

// An open scanner of level B8, which has focus commands.
struct FocusScanner : ExtendedScanner {
  FocusScanner() { REQUIRE(Open() == 1); }

  // All of an automatic focus but the answer: parameters, ESC p FF, ESC q.
  void AcceptFocusing() {
    AcceptParameters();
    device.Expect({0x1B, 0x70}).Reply({0x06}).Expect({0xFF}).Reply({0x06});
    device.Expect({0x1B, 0x71});
  }
};

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
  device.Expect({0x1B, 0x70}).Reply({0x06}).Expect({0x52}).Reply({0x06});
  CHECK(PMSetFocus(0, 0x12) == 0x12);
  device.Expect({0x1B, 0x70}).Reply({0x06}).Expect({0x40}).Reply({0x06});
  CHECK(PMSetFocus(0, 0x00) == 0x00);
  CHECK(system.sleptMilliseconds == 0);
}

TEST_CASE_FIXTURE(FocusScanner, "positions wrap at 8 bits") {
  device.Expect({0x1B, 0x70}).Reply({0x06}).Expect({0x3F}).Reply({0x06});
  CHECK(PMSetFocus(0, 0xFF) == 0xFF);
}

TEST_CASE_FIXTURE(FocusScanner, "position 191 is sent, but reads as unknown") {
  device.Expect({0x1B, 0x70}).Reply({0x06}).Expect({0xFF}).Reply({0x06});
  CHECK(PMSetFocus(0, 191) == 156);
}

TEST_CASE_FIXTURE(FocusScanner, "a position that is not acknowledged or not carried is unknown") {
  device.FailNextWrite();
  CHECK(PMSetFocus(0, 0) == 156);
  device.Expect({0x1B, 0x70}).FailNextRead();
  CHECK(PMSetFocus(0, 0) == 156);
  device.Expect({0x1B, 0x70}).Reply({kNak});
  CHECK(PMSetFocus(0, 0) == 156);
  device.Expect({0x1B, 0x70}).Reply({0x06}).FailNextWrite();
  CHECK(PMSetFocus(0, 0) == 156);
  device.Expect({0x1B, 0x70}).Reply({0x06}).Expect({0x40}).Reply({kNak});
  CHECK(PMSetFocus(0, 0) == 156);
  CHECK(PMGetScanError() == 0);
}

TEST_CASE_FIXTURE(FocusScanner, "automatic focus sets up, asks, waits 20 seconds and reads") {
  AcceptParameters();
  device.Expect({0x1B, 0x70}).Reply({0x06}).Expect({0xFF}).Reply({0x06});
  device.Expect({0x1B, 0x71}).Reply({0x02, 0x00, 0x02, 0x00}).Reply({0x00, 0x4A});
  CHECK(PMSetFocus(1, 0x12) == 0x0A);
  CHECK(system.sleptMilliseconds == 20000);
}

TEST_CASE_FIXTURE(FocusScanner, "any mode but 0 is automatic") {
  AcceptFocusing();
  device.Reply({0x02, 0x00, 0x02, 0x00}).Reply({0x00, 0x40});
  CHECK(PMSetFocus(0xFFFFFF00, 0x12) == 0x00);
}

TEST_CASE_FIXTURE(FocusScanner, "automatic focus uses the settings' area and pixel type of now") {
  InitAcquire();
  Set("areaWidthPx=32 areaHeightPx=5 pixelType=8");
  AcceptParameters(With(With(ParameterBlock(), 16, Word(32) + Word(5)), 25, {0x0C}));
  device.Expect({0x1B, 0x70}).Reply({0x06}).Expect({0xFF}).Reply({0x06});
  device.Expect({0x1B, 0x71}).Reply({0x02, 0x00, 0x02, 0x00}).Reply({0x00, 0x41});
  CHECK(PMSetFocus(1, 0) == 1);
}

TEST_CASE("automatic focus goes on without an acknowledge of its start, after the wait") {
  for (const int failing : {0, 1, 2}) {
    CAPTURE(failing);
    FocusScanner scanner;
    scanner.AcceptParameters();
    if (failing == 0) scanner.device.FailNextWrite();
    if (failing == 1) scanner.device.Expect({0x1B, 0x70}).Reply({kNak});
    if (failing == 2) scanner.device.Expect({0x1B, 0x70}).Reply({6}).Expect({0xFF}).Reply({kNak});
    scanner.device.Expect({0x1B, 0x71}).Reply({0x02, 0x00, 0x02, 0x00}).Reply({0xFE, 0x50});
    CHECK(PMSetFocus(1, 0) == 0x10);
    CHECK(scanner.system.sleptMilliseconds == 20000);
  }
}

TEST_CASE("a focus reply tells a position only when it is whole and its first bit is clear") {
  struct Row {
    const char* header;
    Bytes data;
    std::uint8_t result;
  };
  for (const Row& row :
       {Row{"02 00 02 00", {0x01, 0x50}, 156}, Row{"02 00 02 00", {0xFF, 0x50}, 156},
        Row{"02 00 02 00", {0xFE, 0x50}, 0x10}, Row{"02 FF 02 00", {0x00, 0x50}, 0x10},
        Row{"02 00 02 00", {0x00, 0xFF}, 156}, Row{"02 00 02 00", {0x00, 0x3F}, 0xFF},
        Row{"02 00 05 00", {0x00, 0x50, 1, 2, 3}, 0x10}, Row{"02 00 96 00", Fill(150, 0x50), 0x10},
        // too short to hold a position
        Row{"02 00 00 00", {}, 156}, Row{"02 00 01 00", {0x00}, 156}}) {
    CAPTURE(row.header);
    CAPTURE(Hex(row.data));
    FocusScanner scanner;
    scanner.AcceptFocusing();
    scanner.device.Reply(FromHex(row.header)).Reply(row.data);
    CHECK(PMSetFocus(1, 0) == row.result);
  }
}

TEST_CASE("a focus header that is wrong or announces too much is not read on") {
  for (const std::string_view header : {"06 00 02 00", "15 00 02 00", "00 02 02 00", "02 00 97 00",
                                        "02 00 FF 7F", "02 00 00 80", "02 00 FF FF"}) {
    CAPTURE(header);
    FocusScanner scanner;
    scanner.AcceptFocusing();
    scanner.device.Reply(FromHex(header));
    CHECK(PMSetFocus(1, 0) == 156);
  }
}

TEST_CASE("a focus answer that cannot be asked for or read is unknown") {
  for (const int failing : {0, 1, 2}) {
    CAPTURE(failing);
    FocusScanner scanner;
    scanner.AcceptParameters();
    scanner.device.Expect({0x1B, 0x70}).Reply({0x06}).Expect({0xFF}).Reply({0x06});
    if (failing == 0) scanner.device.FailNextWrite();
    if (failing == 1) scanner.device.Expect({0x1B, 0x71}).FailNextRead();
    if (failing == 2) scanner.device.Expect({0x1B, 0x71}).Reply({2, 0, 2, 0}).FailNextRead();
    CHECK(PMSetFocus(1, 0) == 156);
    CHECK(PMGetScanError() == 0);
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
