#include <doctest/doctest.h>

#include "pmscan/report_page/scan_outcome.h"
#include "tests/capture/sample_conversation.h"
#include "tests/report/capture_text.h"

namespace {

using pmddb832::tests::Bytes;
using pmddb832::tests::SampleConversation;
using pmscan::CapturedOutcome;
using pmscan::tests::CaptureOf;

CapturedOutcome OutcomeOf(const capture::Capture& capture) {
  return pmscan::OutcomeOf(capture, capture::TellCalls(capture), pmscan::PagesOf(capture));
}

// 3 x 5 pixels of grey, in blocks of 2 lines.
SampleConversation& Begin(SampleConversation& scan) {
  Bytes parameters(64);
  parameters[16] = 3;
  parameters[20] = 5;
  parameters[25] = 8;
  parameters[28] = 2;
  return scan.Call("PMAcquireImage")
      .Command({0x1C, 'W'}, parameters)
      .Write({0x1C, 'G'})
      .Read({0x02, 0x00, 6, 0, 0, 0, 2, 0, 0, 0, 3, 0, 0, 0});
}

const Bytes kFull{1, 2, 3, 4, 5, 6, 0};

SampleConversation& Finish(SampleConversation& scan) {
  scan.Read(kFull).Write({0x06}).Read(kFull).Write({0x06}).Read({7, 8, 9, 0});
  return scan.Return({{"status", 1}, {"done", 1}, {"lines", 5}});
}

TEST_CASE("a scan that went well is told with its pages") {
  SampleConversation scan;
  Finish(Begin(scan));
  CHECK(OutcomeOf(scan.capture).sentence == "1 page came whole; nothing went wrong.");
  CHECK_FALSE(OutcomeOf(scan.capture).isTrouble);
}

TEST_CASE("a failure is told with its call, its time, its reason and what came") {
  SampleConversation scan;
  Begin(scan).Read(kFull).Write({0x06}).FailedRead(7, -1).Return({{"status", 2}, {"lines", 5}});
  scan.Call("PMGetScanError").Return({{"result", 9}});
  const CapturedOutcome outcome = OutcomeOf(scan.capture);
  CHECK(outcome.sentence ==
        "PMAcquireImage failed at 0.011 s: transfer failed (9). "
        "2 of 5 lines of page 1 came.");
  CHECK(outcome.isTrouble);
}

TEST_CASE("a failure behind which the same call succeeds is only a thing on the way") {
  SampleConversation scan;
  scan.Call("PMAcquireImage").Return({{"status", 2}});
  scan.Call("PMGetScanError").Return({{"result", 43}});
  Finish(Begin(scan));
  const CapturedOutcome outcome = OutcomeOf(scan.capture);
  CHECK(outcome.sentence == "1 page came whole; 2 things went wrong on the way.");
  CHECK_FALSE(outcome.isTrouble);
}

TEST_CASE("a feeder that is empty behind whole pages is a good end") {
  SampleConversation scan;
  Finish(Begin(scan));
  scan.Call("PMAcquireImage").Return({{"status", 2}}).Call("PMGetScanError");
  scan.Return({{"result", 13}});
  const CapturedOutcome outcome = OutcomeOf(scan.capture);
  CHECK(outcome.sentence.ends_with("(13). 1 page came whole."));
  CHECK_FALSE(outcome.isTrouble);
}

TEST_CASE("a feeder that is empty from the start is a failure") {
  SampleConversation scan;
  scan.Call("PMAcquireImage").Return({{"status", 2}}).Call("PMGetScanError");
  scan.Return({{"result", 13}});
  CHECK(OutcomeOf(scan.capture).isTrouble);
}

TEST_CASE("a capture that ends within a call tells which, amid a transfer too") {
  SampleConversation scan;
  Begin(scan).Read(kFull);
  const CapturedOutcome outcome = OutcomeOf(scan.capture);
  CHECK(outcome.sentence ==
        "The capture ends within PMAcquireImage, before the call returned. "
        "2 of 5 lines of page 1 came.");
  CHECK(outcome.isTrouble);
}

TEST_CASE("a conversation without a scan says so") {
  const capture::Capture capture =
      CaptureOf("call PMReset\nwrite 2 : 1B 40\nread 1 : 06\nreturn PMReset result=1\n");
  CHECK(OutcomeOf(capture).sentence == "No picture was sent; nothing went wrong.");
  CHECK_FALSE(OutcomeOf(capture).isTrouble);
}

TEST_CASE("transfers without calls are judged by what was said") {
  const capture::Capture capture = CaptureOf("write 2 : 1B 40\nread 1 : 15\n");
  CHECK(OutcomeOf(capture).sentence == "No picture was sent; 1 thing went wrong on the way.");
  CHECK(OutcomeOf(capture).isTrouble);
}

TEST_CASE("what a capture does not keep is noted") {
  const capture::Capture capture = CaptureOf(
      "write 2 : 1C 47\nread 14 : 02 00 06 00 00 00 01 00 00 00 00 00 00 00\n"
      "read 7 crc 12345678 last 00\n");
  const std::vector<std::string> notes = pmscan::NotesOn(capture, pmscan::PagesOf(capture));
  REQUIRE(notes.size() == 3);
  CHECK(notes[0].starts_with("The capture keeps no times"));
  CHECK(notes[1].starts_with("The capture keeps no calls"));
  CHECK(notes[2].starts_with("The capture keeps the length of picture data"));
}

TEST_CASE("a whole capture needs no notes") {
  SampleConversation scan;
  Finish(Begin(scan));
  CHECK(pmscan::NotesOn(scan.capture, pmscan::PagesOf(scan.capture)).empty());
}

TEST_CASE("an empty capture is told as one") {
  CHECK(pmscan::NotesOn({}, {}) == std::vector<std::string>{"The capture is empty."});
}

}  // namespace
