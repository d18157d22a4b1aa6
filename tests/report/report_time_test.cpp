#include <doctest/doctest.h>

#include "pmscan/report_page/time_spans.h"
#include "tests/report/capture_text.h"

namespace {

using pmscan::Activity;
using pmscan::TimeSpan;

// Every activity once or more, with lengths that no two of them share.
constexpr const char* kScan =
    "call PMAcquireImage bufferBytes=300 @0.100000\n"
    "  write 2 : 1C 47 @0.100003\n"
    "  read 14 : 02 00 02 00 00 00 02 00 00 00 00 00 00 00 @0.100020\n"
    "  read 3 : 01 02 00 @0.100120\n"
    "  write 1 : 06 @0.100121\n"
    "  read 3 got 0 result 80070079 @1.600121\n"
    "  read 1 : 55 @1.600128\n"
    "return PMAcquireImage status=2 @1.602128\n"
    "host zoom = 100\n"
    "call PMGetScanError @1.652128\n"
    "return PMGetScanError result=9 @1.652129\n"
    "write 2 : 1B 40 @1.752129\n"
    "read 1 : 06 @1.752132\n";

pmscan::ActivitySum SumOf(Activity activity) {
  const capture::Capture capture = pmscan::tests::CaptureOf(kScan);
  return pmscan::SumsOf(pmscan::TimeSpansOf(capture))[static_cast<std::size_t>(activity)];
}

TEST_CASE("time between calls, and in front of commands outside of calls, is the host's") {
  CHECK(SumOf(Activity::kHost).microseconds == 50000 + 100000);
  CHECK(SumOf(Activity::kHost).spans == 3);
}

TEST_CASE("time behind the last transfer of a call is the module's") {
  CHECK(SumOf(Activity::kModule).microseconds == 2000 + 1);
}

TEST_CASE("time up to a command within a call is that of commands") {
  CHECK(SumOf(Activity::kCommand).microseconds == 3);
  CHECK(SumOf(Activity::kCommand).sent == 2);
}

TEST_CASE("time up to replies and acknowledges is that of answers") {
  CHECK(SumOf(Activity::kAnswer).microseconds == 17 + 3);
  CHECK(SumOf(Activity::kAnswer).received == 15);
}

TEST_CASE("time up to blocks, their headers and the host's answer is the picture's") {
  const pmscan::ActivitySum sum = SumOf(Activity::kPicture);
  CHECK(sum.microseconds == 100 + 1 + 1500000);
  CHECK(sum.spans == 3);
  CHECK(sum.sent == 1);
  CHECK(sum.received == 3);
}

TEST_CASE("time up to a transfer that nothing asked for is told by itself") {
  CHECK(SumOf(Activity::kUnasked).microseconds == 7);
  CHECK(SumOf(Activity::kUnasked).received == 1);
}

TEST_CASE("the time of all activities is that from the first entry to the last") {
  const capture::Capture capture = pmscan::tests::CaptureOf(kScan);
  std::uint64_t sum = 0;
  for (const pmscan::ActivitySum& one : pmscan::SumsOf(pmscan::TimeSpansOf(capture)))
    sum += one.microseconds;
  CHECK(sum == 1652132);
}

TEST_CASE("every entry but changes of settings ends one span, in its order") {
  const capture::Capture capture = pmscan::tests::CaptureOf(kScan);
  const std::vector<TimeSpan> spans = pmscan::TimeSpansOf(capture);
  REQUIRE(spans.size() == 12);
  CHECK(spans[7].entry == 7);
  CHECK(spans[8].entry == 9);
  CHECK(spans[8].transfer == nullptr);
  CHECK(spans[0].Length() == 0);
}

TEST_CASE("times that go back take no time, and do not make what follows longer") {
  const capture::Capture capture = pmscan::tests::CaptureOf(
      "write 2 : 1B 40 @5.0\nread 1 : 06 @4.0\nwrite 2 : 1B 40 @5.5\nread 1 : 06 @5.6\n");
  const std::vector<TimeSpan> spans = pmscan::TimeSpansOf(capture);
  CHECK(spans[1].Length() == 0);
  CHECK(spans[2].Length() == 500000);
  CHECK(spans[3].Length() == 100000);
}

TEST_CASE("the longest spans come longest first, none below a thousandth of a second") {
  const capture::Capture capture = pmscan::tests::CaptureOf(kScan);
  const std::vector<TimeSpan> spans = pmscan::TimeSpansOf(capture);
  CHECK(pmscan::LongestOf(spans, 10) == std::vector<std::size_t>{5, 10, 8, 7});
  CHECK(pmscan::LongestOf(spans, 2) == std::vector<std::size_t>{5, 10});
}

}  // namespace
