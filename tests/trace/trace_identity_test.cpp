#include <doctest/doctest.h>

#include "capture/pcapng/pcapng_writer.h"
#include "capture/trace/trace_import.h"
#include "tests/capture/sample_conversation.h"
#include "tests/trace/bus_trace.h"

namespace {

using namespace pmddb832::tests;
using capture::Capture;
using capture::ImportTrace;
using capture::Transfer;

std::string Again(const Capture& capture) {
  return TextOf(ImportTrace(capture::ToPcapng(capture), {}).capture);
}

bool IsKept(const Capture& capture) {
  for (const capture::Entry& entry : capture.entries) {
    if (!std::get<Transfer>(entry).bytes.has_value()) return false;
  }
  return true;
}

struct Cut {
  std::uint16_t linkType;
  bool isBigEndian;
  bool hasNanoseconds;
  std::uint32_t most;  // bytes at once
};

std::string Imported(const Capture& transfers, const Cut& cut) {
  BusTrace trace(cut.linkType, cut.isBigEndian, cut.hasNanoseconds);
  for (const capture::Entry& entry : transfers.entries) {
    trace.AddInPieces(std::get<Transfer>(entry), cut.most);
  }
  return TextOf(ImportTrace(trace.File(), {}).capture);
}

TEST_CASE("the transfers of every capture are the same after convert and import") {
  REQUIRE(CaptureFiles().size() >= 10);
  for (const std::string& file : CaptureFiles()) {
    CAPTURE(file);
    const Capture capture = CaptureIn(file);
    CHECK(Again(capture) == TextOf(TransfersOf(capture)));
  }
}

TEST_CASE("convert and import keep reads that are short, failed or told by nothing") {
  SampleConversation sample;
  sample.Write({0x1C, 'F'}).ShortRead(16, Repeated(6, 1)).ShortRead(10, Repeated(8, 2));
  sample.Read({1, 2}).Write({0x1C}).Write({'F'}).FailedRead(16, -2147024775);
  sample.Write({0x1C, 'W'}).Read({6}).Write(Repeated(32, 3)).Write(Repeated(32, 4));
  sample.Write({0x1B, 'I'}).Read(Joined({2, 2, 8, 0}, Repeated(8, 9))).ShortRead(4, {});
  sample.ReadImage(2305, 0x80);
  sample.capture.entries.emplace_back(Transfer{
      .requested = 2, .result = -2147023729, .microseconds = 77777, .bytes = Bytes{0x1B, 'G'}});
  CHECK(Again(sample.capture) == TextOf(sample.capture));
}

TEST_CASE("a trace of a bus is the capture again, however the system cut its transfers") {
  int traces = 0;
  for (const std::string& file : CaptureFiles()) {
    const Capture transfers = TransfersOf(CaptureIn(file));
    if (!IsKept(transfers)) continue;
    for (const std::uint16_t link : {std::uint16_t{189}, std::uint16_t{220}, std::uint16_t{249}}) {
      for (const std::uint32_t most : {64u, 512u, 1024u, 65536u}) {
        CAPTURE(file);
        CAPTURE(link);
        CAPTURE(most);
        const bool isOdd = (++traces & 1) != 0;
        CHECK(Imported(transfers, {link, isOdd, traces % 3 == 0, most}) == TextOf(transfers));
      }
    }
  }
  CHECK(traces >= 50);
}

}  // namespace
