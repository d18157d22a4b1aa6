#include "tests/extended/extended_fixture.h"
#include "tests/safety/failing_allocation.h"

namespace pmddb832::tests::extended {
namespace {

// One transfer of a conversation, and what becomes of a call whose transfer fails here.
struct Transfer {
  bool isWrite;
  Bytes bytes;
  std::uint32_t code;          // when only this transfer fails
  std::uint32_t codeWhenGone;  // when all that follow fail too
  bool asksStatus;             // the driver asks for the cause: it gets a good status
};

using Conversation = std::vector<Transfer>;

// The first transfers of a conversation, as they should be.
void Play(ScriptedDevice& device, const Conversation& conversation, std::size_t transfers) {
  for (std::size_t i = 0; i < transfers; ++i) {
    if (conversation[i].isWrite) {
      device.Expect(conversation[i].bytes);
    } else {
      device.Reply(conversation[i].bytes);
    }
  }
}

void Fail(ExtendedScanner& scanner, const Transfer& transfer) {
  if (transfer.isWrite) {
    scanner.device.FailNextWrite();
  } else {
    scanner.device.FailNextRead();
  }
  if (transfer.asksStatus) scanner.AnswerStatus();
}

// An open behind its probe.
const Conversation& OpenConversation() {
  static const Conversation conversation{
      {true, {0x1B, 0x40}, 0, 0, false}, {false, {0x06}, 0, 0, false},
      {true, {0x1C, 0x49}, 0, 0, false}, {false, Identity(), 0, 0, false},
      {true, {0x1C, 0x46}, 7, 7, false}, {false, Status(0, 0x80), 7, 7, false}};
  return conversation;
}

// A page from the feeder with tables and matrix, in two blocks.
const Conversation& ScanConversation() {
  const Bytes parameters = With(With(ParameterBlock(), 26, {0x01}), 29, {0x00, 0x00, 0x01});
  static const Conversation conversation{{true, {0x1B, 0x7A}, 22, 22, false},
                                         {false, {0x06}, 22, 22, false},
                                         {true, Text("R") + Fill(256, 0), 22, 22, false},
                                         {false, {0x06}, 22, 22, false},
                                         {true, {0x1B, 0x7A}, 22, 22, false},
                                         {false, {0x06}, 22, 22, false},
                                         {true, Text("G") + Fill(256, 0), 22, 22, false},
                                         {false, {0x06}, 22, 22, false},
                                         {true, {0x1B, 0x7A}, 22, 22, false},
                                         {false, {0x06}, 22, 22, false},
                                         {true, Text("B") + Fill(256, 0), 22, 22, false},
                                         {false, {0x06}, 22, 22, false},
                                         {true, {0x1B, 0x6D}, 22, 22, false},
                                         {false, {0x06}, 22, 22, false},
                                         {true, Fill(9, 0), 22, 22, false},
                                         {false, {0x06}, 22, 22, false},
                                         {true, {0x1C, 0x57}, 22, 22, false},
                                         {false, {0x06}, 22, 22, false},
                                         {true, With(parameters, 20, Word(300)), 22, 22, false},
                                         {false, {0x06}, 22, 22, false},
                                         {true, {0x1C, 0x46}, 22, 7, true},
                                         {false, Status(), 22, 7, true},
                                         {true, {0x1C, 0x47}, 22, 7, true},
                                         {false, Header(4064, 1, 736), 22, 7, true},
                                         {false, Fill(4065, 0), 9, 9, false},
                                         {true, {0x06}, 9, 9, false},
                                         {false, Fill(737, 0), 9, 9, false},
                                         {true, {0x0C}, 0, 0, false},
                                         {false, {0x06}, 0, 0, false}};
  return conversation;
}

// A scanner with that page set up.
struct PageScanner : ExtendedScanner {
  PageScanner() { OpenFeeder(); }

  Band ScanPage() {
    settings.customGamma = settings.colorCorrection = 1;
    settings.areaHeightPx = 300;
    InitAcquire();
    return Acquire(300 * 16);
  }

  void CheckCleanPage() {
    Play(device, ScanConversation(), ScanConversation().size());
    const Band band = ScanPage();
    CHECK(band.record.status == kGoOn);
    CHECK(PMGetScanError() == 0);
    CHECK(band.image == Fill(300 * 16, 0));
  }
};

TEST_CASE_FIXTURE(PageScanner, "the page that the faults are put into scans without any") {
  CheckCleanPage();
}

TEST_CASE("a transfer that fails ends the scan with its code, and the next page is clean") {
  for (std::size_t place = 0; place < ScanConversation().size(); ++place) {
    CAPTURE(place);
    const Transfer& failing = ScanConversation()[place];
    PageScanner scanner;
    Play(scanner.device, ScanConversation(), place);
    Fail(scanner, failing);
    CHECK(scanner.ScanPage().record.status == kFailed);
    CHECK(PMGetScanError() == failing.code);
    scanner.CheckCleanPage();
  }
}

TEST_CASE("a scanner that is gone ends the scan, and the calls behind it end as well") {
  for (std::size_t place = 0; place < ScanConversation().size(); ++place) {
    CAPTURE(place);
    PageScanner scanner;
    Play(scanner.device, ScanConversation(), place);
    scanner.device.Unplug();
    CHECK(scanner.ScanPage().record.status == kFailed);
    CHECK(PMGetScanError() == ScanConversation()[place].codeWhenGone);
    scanner.Acquire(300 * 16);
    PMAbortScan();
    CHECK(PMGetOptionStatus(0) == 7);
    CHECK(PMSetFocus(0, 1) == 156);
    CHECK(PMEnableOption(1) == 0);
    CHECK(PMReset() == 0);
    PMCloseScanner();
  }
}

TEST_CASE("an acknowledge that is a NAK ends the scan with its code, and the next page is clean") {
  for (std::size_t place = 0; place < ScanConversation().size(); ++place) {
    const Transfer& refused = ScanConversation()[place];
    if (refused.isWrite || refused.bytes != Bytes{0x06}) continue;
    CAPTURE(place);
    PageScanner scanner;
    Play(scanner.device, ScanConversation(), place);
    scanner.device.Reply({kNak});
    CHECK(scanner.ScanPage().record.status == kFailed);
    CHECK(PMGetScanError() == refused.code);
    scanner.CheckCleanPage();
  }
}

TEST_CASE("a transfer that fails ends the open with its code, and the next open is clean") {
  for (std::size_t place = 0; place < OpenConversation().size(); ++place) {
    CAPTURE(place);
    const Transfer& failing = OpenConversation()[place];
    ExtendedScanner scanner;
    scanner.AnswerProbe();
    Play(scanner.device, OpenConversation(), place);
    Fail(scanner, failing);
    CHECK(PMOpenScanner(&scanner.settings) == 0);
    CHECK(PMGetScanError() == failing.code);
    CHECK(scanner.system.heapBlocks == 0);
    // A further open only replaces the command set.
    const ReplacedSet replaced;
    CHECK(scanner.Open() == 1);
  }
}

// An allocation that is refused: how many succeed before, and how much of the open was sent.
struct Refusal {
  std::size_t allocations;
  bool probed;
  std::size_t transfers;
};

TEST_CASE("each allocation of an open may be refused; nothing leaks and the next open is clean") {
  // channel, probe, command set, its transport, four work areas; two buffers of the identification
  for (const Refusal& refusal :
       {Refusal{0, false, 0}, Refusal{1, false, 0}, Refusal{2, true, 0}, Refusal{3, true, 0},
        Refusal{4, true, 0}, Refusal{5, true, 0}, Refusal{6, true, 0}, Refusal{7, true, 0},
        Refusal{8, true, 4}, Refusal{9, true, 4}}) {
    CAPTURE(refusal.allocations);
    ExtendedScanner scanner;
    if (refusal.probed) scanner.AnswerProbe();
    Play(scanner.device, OpenConversation(), refusal.transfers);
    {
      const AllocationLimit limit(refusal.allocations);
      CHECK(PMOpenScanner(&scanner.settings) == 0);
    }
    CHECK(PMGetScanError() == (refusal.allocations == 1 ? 8 : 0));
    const ReplacedSet replaced;
    CHECK((replaced.set != nullptr) == (refusal.transfers > 0));
    CHECK(scanner.Open() == 1);
  }
}

TEST_CASE("an identification without one of its buffers ends, though there is memory again") {
  for (const std::size_t allocation : {8u, 9u}) {
    CAPTURE(allocation);
    ExtendedScanner scanner;
    scanner.AnswerProbe();
    Play(scanner.device, OpenConversation(), 4);
    const RefusedAllocation refused(allocation);
    CHECK(PMOpenScanner(&scanner.settings) == 0);
    CHECK(PMGetScanError() == 0);
  }
}

TEST_CASE_FIXTURE(ExtendedScanner, "ten allocations and one heap block make an open") {
  const std::size_t before = AllocationCount();
  REQUIRE(Open() == 1);
  CHECK(AllocationCount() - before == 10);
  CHECK(system.heapBlocks == 1);
}

TEST_CASE_FIXTURE(ExtendedScanner,
                  "without a data buffer the open fails and no scan reads anything") {
  system.heapAllocationsLeft = 0;
  CHECK(Open() == 0);
  CHECK(PMGetScanError() == 0);
  CHECK(currentChannel->opened == 1);
  InitAcquire();
  CheckAcquireFails(64, 9);
  system.heapAllocationsLeft.reset();
  AnswerReset();
  AnswerIdentity();
  AnswerStatus();
  CHECK(OpenSet() == 1);
  CHECK(ScanPage().record.done == 1);
}

}  // namespace
}  // namespace pmddb832::tests::extended
