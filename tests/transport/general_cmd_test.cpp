#include <doctest/doctest.h>

#include "tests/interface/module_fixture.h"
#include "tests/interface/recording_command_set.h"
#include "tests/safety/failing_allocation.h"

namespace pmddb832::tests {
namespace {

constexpr std::uint8_t kEscape = 0x1B;

struct CommandSetFixture : ModuleFixture {
  CommandSetFixture() { MakeChannel(); }

  void Feed() {
    device.Expect({0x19}).Reply({0x06});
    CHECK(set.FeedPaper(CallNow()) == 1);
  }
  void StartScan() {
    device.Expect({kEscape, 0x47});
    CHECK(set.SendEscCode(CallNow(), 'G') == 1);
  }
  void Eject() {
    device.Expect({0x0C}).Reply({0x06});
    CHECK(set.EjectPage(CallNow()) == 1);
  }
  void Reset() {
    device.Expect({kEscape, 0x40}).Reply({0x06});
    CHECK(set.ResetScanner(CallNow()) == 1);
  }
  // What may be sent in each state of the page: no page, a page fed, a page scanned.
  void CheckNoPage() {
    CHECK(set.EjectPage(CallNow()) == 0);
    Feed();
  }
  void CheckFed() {
    CHECK(set.FeedPaper(CallNow()) == 0);
    CHECK(set.EjectPage(CallNow()) == 0);
  }
  void CheckScanned() { Eject(); }

  RecordingCommandSet set;
};

}  // namespace

TEST_CASE_FIXTURE(CommandSetFixture, "at first a page can be fed and none ejected") {
  CheckNoPage();
}

TEST_CASE_FIXTURE(CommandSetFixture, "behind a feed neither feed nor eject sends anything") {
  Feed();
  CheckFed();
}

TEST_CASE_FIXTURE(CommandSetFixture, "behind ESC G the page can be ejected, once") {
  StartScan();
  Eject();
  CHECK(set.EjectPage(CallNow()) == 0);
  CheckNoPage();
}

TEST_CASE_FIXTURE(CommandSetFixture,
                  "behind ESC G the next page can be fed, and not ejected then") {
  StartScan();
  Feed();
  CheckFed();
}

TEST_CASE_FIXTURE(CommandSetFixture, "a fed page that was scanned can be ejected") {
  Feed();
  StartScan();
  StartScan();
  CheckScanned();
}

TEST_CASE_FIXTURE(CommandSetFixture, "only the letter G moves the state of the page") {
  for (int letter = 0; letter < 256; ++letter) {
    if (letter == 'G') continue;
    device.Expect({kEscape, static_cast<std::uint8_t>(letter)});
    CHECK(set.SendEscCode(CallNow(), static_cast<std::uint8_t>(letter)) == 1);
  }
  CheckNoPage();
}

TEST_CASE_FIXTURE(CommandSetFixture, "an ESC G that cannot be sent moves the state all the same") {
  device.FailNextWrite();
  CHECK(set.SendEscCode(CallNow(), 'G') == 0);
  CheckScanned();
}

TEST_CASE_FIXTURE(CommandSetFixture, "the start of an extended scan moves the state like ESC G") {
  Feed();
  set.NoteScanStarted();
  CheckScanned();
}

TEST_CASE_FIXTURE(CommandSetFixture, "a failed feed leaves the state as it was") {
  StartScan();
  device.Expect({0x19}).Reply({0x15});
  CHECK(set.FeedPaper(CallNow()) == 0);
  device.FailNextWrite();
  CHECK(set.FeedPaper(CallNow()) == 0);
  CheckScanned();
  device.Expect({0x19}).Reply({0x15});
  CHECK(set.FeedPaper(CallNow()) == 0);
  CheckNoPage();
}

TEST_CASE_FIXTURE(CommandSetFixture, "a failed eject leaves the state as it was") {
  StartScan();
  device.Expect({0x0C}).Reply({0x15});
  CHECK(set.EjectPage(CallNow()) == 0);
  device.Expect({0x0C}).FailNextRead();
  CHECK(set.EjectPage(CallNow()) == 0);
  CheckScanned();
}

TEST_CASE_FIXTURE(CommandSetFixture, "a reset is ESC @ and an acknowledge; no page is known then") {
  Feed();
  Reset();
  CheckNoPage();
  StartScan();
  Reset();
  CheckNoPage();
}

TEST_CASE_FIXTURE(CommandSetFixture, "a reset forgets the page even when the scanner is silent") {
  Feed();
  device.FailNextWrite();
  CHECK(set.ResetScanner(CallNow()) == 0);
  CheckNoPage();
  StartScan();
  device.Expect({kEscape, 0x40}).FailNextRead();
  CHECK(set.ResetScanner(CallNow()) == 0);
  CheckNoPage();
}

TEST_CASE_FIXTURE(CommandSetFixture, "a reset that is not acknowledged fails") {
  device.Expect({kEscape, 0x40}).Reply({0x15}).Expect({kEscape, 0x40}).Reply({0x00});
  CHECK(set.ResetScanner(CallNow()) == 0);
  CHECK(set.ResetScanner(CallNow()) == 0);
}

TEST_CASE_FIXTURE(CommandSetFixture, "acknowledges go through the transport") {
  device.Expect({0x06}).Expect({0x18}).Reply({0x06}).Reply({0x06}).Reply({0x15});
  CHECK(set.SendAck(CallNow(), 0x06) == 1);
  CHECK(set.SendAck(CallNow(), 0x18) == 1);
  CHECK(set.CheckAck(CallNow()) == 1);
  CHECK(set.CheckAck(CallNow()) == 0);
}

TEST_CASE_FIXTURE(CommandSetFixture, "a command with a block needs both acknowledges") {
  device.ExpectBlock(kEscape, 'm', {1, 2, 3});
  CHECK(SendEscBlock(set, CallNow(), 'm', Bytes{1, 2, 3}) == 1);
  device.Expect({kEscape, 'm'}).Reply({0x06}).Expect({1}).Reply({0x15});
  CHECK(SendEscBlock(set, CallNow(), 'm', Bytes{1}) == 0);
  device.Expect({kEscape, 'm'}).Reply({0x15});
  CHECK(SendEscBlock(set, CallNow(), 'm', Bytes{1}) == 0);
}

TEST_CASE_FIXTURE(CommandSetFixture, "a command with a block stops at the transfer that fails") {
  for (const std::string_view conversation :
       {">!", "> 1B 7A <!", "> 1B 7A < 06 >!", "> 1B 7A < 06 > 01 <!"}) {
    CAPTURE(conversation);
    device.Converse(conversation);
    CHECK(SendEscBlock(set, CallNow(), 'z', Bytes{1}) == 0);
  }
}

TEST_CASE_FIXTURE(CommandSetFixture, "a table is sent behind its prefix byte, in one transfer") {
  device.ExpectBlock(kEscape, 'z', Bytes{'R'} + Fill(256, 0xA7));
  CHECK(SendEscTable(set, CallNow(), 'z', 'R', Fill(256, 0xA7)) == 1);
  device.Expect({kEscape, 'z'}).Reply({0x06}).Expect({'M', 1, 2}).Reply({0x15});
  CHECK(SendEscTable(set, CallNow(), 'z', 'M', Bytes{1, 2}) == 0);
}

TEST_CASE_FIXTURE(CommandSetFixture, "the prefix 0xFF stands for none") {
  device.ExpectBlock(kEscape, 'm', Bytes{1, 2, 3, 4, 5, 6, 7, 8, 9});
  CHECK(SendEscTable(set, CallNow(), 'm', 0xFF, Bytes{1, 2, 3, 4, 5, 6, 7, 8, 9}) == 1);
}

TEST_CASE_FIXTURE(CommandSetFixture, "gamma codes: five listed ones, 0x02 for all others") {
  struct Row {
    std::uint16_t gamma;
    std::uint8_t code;
  };
  const Row rows[] = {{100, 0x01}, {220, 0x02}, {300, 0x00}, {280, 0x10}, {250, 0x20},
                      {180, 0x02}, {0, 0x02},   {99, 0x02},  {301, 0x02}, {65535, 0x02}};
  for (const Row& row : rows) {
    CAPTURE(row.gamma);
    CHECK(set.SetGamma(row.gamma) == row.code);
  }
}

TEST_CASE_FIXTURE(CommandSetFixture, "halftone rows that each level digit supports") {
  struct Row {
    char digit;
    std::uint16_t count;
  };
  const Row rows[] = {{'0', 0},  {'1', 4},     {'2', 4},    {'3', 4},    {'4', 8},   {'5', 9},
                      {'6', 10}, {'7', 10},    {'8', 10},   {'9', 10},   {'/', 0},   {'\0', 0},
                      {'A', 10}, {'\x7F', 10}, {'\x80', 0}, {'\xB8', 0}, {'\xFF', 0}};
  for (const Row& row : rows) {
    CAPTURE(static_cast<int>(row.digit));
    settings.commandLevelText[1] = row.digit;
    CHECK(set.GetHalfTones(settings) == row.count);
  }
}

TEST_CASE_FIXTURE(CommandSetFixture, "the work area of a set that needs none is there at once") {
  CHECK(set.InitWorkArea() == 1);
}

TEST_CASE_FIXTURE(CommandSetFixture, "a set without memory for its transport tells") {
  CHECK(set.Wire() != nullptr);
  const AllocationLimit none(0);
  RecordingCommandSet poor;
  CHECK(poor.Wire() == nullptr);
}

}  // namespace pmddb832::tests
