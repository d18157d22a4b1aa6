#include <doctest/doctest.h>

#include "pmscan/report_page/captured_pages.h"
#include "tests/capture/sample_conversation.h"
#include "tests/report/capture_text.h"

namespace {

using pmddb832::tests::Bytes;
using pmddb832::tests::Joined;
using pmddb832::tests::Repeated;
using pmddb832::tests::SampleConversation;
using pmscan::CapturedBlock;
using pmscan::CapturedPage;
using Numbers = std::vector<std::uint32_t>;

Numbers LinesOf(const CapturedPage& page) {
  Numbers lines;
  for (const CapturedBlock& block : page.blocks) lines.push_back(block.lines);
  return lines;
}

// 13 x 37 pixels of grey, in blocks of 10 lines.
SampleConversation& Begin(SampleConversation& scan) {
  Bytes parameters(64);
  parameters[0] = parameters[4] = 75;
  parameters[16] = 13;
  parameters[20] = 37;
  parameters[25] = 8;
  parameters[28] = 10;
  return scan.Command({0x1C, 'W'}, parameters)
      .Write({0x1C, 'G'})
      .Read({0x02, 0x00, 130, 0, 0, 0, 3, 0, 0, 0, 91, 0, 0, 0});
}

Bytes Block(std::size_t bytes, std::uint8_t status = 0) {
  return Joined(Repeated(bytes, 0x40), {status});
}

SampleConversation WholeScan() {
  SampleConversation scan;
  scan.Call("PMInitAcquire").Return({{"status", 1}, {"heightLines", 41}});
  Begin(scan.Call("PMAcquireImage")).Read(Block(130)).Write({0x06}).Read(Block(130)).Write({0x06});
  scan.Return({{"status", 1}, {"lines", 17}}).Call("PMAcquireImage");
  scan.Read(Block(130)).Write({0x06}).Return({{"status", 1}, {"lines", 7}});
  scan.Call("PMAcquireImage").Read(Block(91)).Return({{"status", 1}, {"done", 1}, {"lines", 17}});
  return scan;
}

TEST_CASE("a page has the shape that the extended parameters tell") {
  const SampleConversation scan = WholeScan();
  const std::vector<CapturedPage> pages = pmscan::PagesOf(scan.capture);
  REQUIRE(pages.size() == 1);
  CHECK(pages[0].shape.width == 13);
  CHECK(pages[0].shape.height == 37);
  CHECK(pages[0].shape.dotsPerInch == 75);
  CHECK(pages[0].shape.bits == 8);
  CHECK(pages[0].hostLines == 41);
}

TEST_CASE("the last block of a page has the lines that are left") {
  const SampleConversation scan = WholeScan();
  const std::vector<CapturedPage> pages = pmscan::PagesOf(scan.capture);
  CHECK(LinesOf(pages[0]) == Numbers{10, 10, 10, 7});
  CHECK(pages[0].Lines() == 37);
  CHECK(pages[0].IsWhole());
}

TEST_CASE("bands are those of the calls, however blocks lie across them") {
  const SampleConversation scan = WholeScan();
  CHECK(pmscan::PagesOf(scan.capture)[0].bands == Numbers{17, 7, 17});
}

TEST_CASE("the bytes of a block are kept without the status behind them") {
  const SampleConversation scan = WholeScan();
  const std::vector<CapturedPage> pages = pmscan::PagesOf(scan.capture);
  CHECK(pages[0].blocks[3].data.size() == 91);
  CHECK(pages[0].blocks[3].data.back() == 0x40);
  CHECK(pages[0].blocks[3].lineBytes == 13);
}

TEST_CASE("a block that comes with an error is not among the lines that came") {
  SampleConversation scan;
  Begin(scan).Read(Block(130)).Write({0x06}).Read(Block(130, 0x80));
  const std::vector<CapturedPage> pages = pmscan::PagesOf(scan.capture);
  REQUIRE(pages[0].blocks.size() == 2);
  CHECK(pages[0].blocks[1].hasError);
  CHECK(pages[0].Lines() == 10);
  CHECK_FALSE(pages[0].IsWhole());
}

TEST_CASE("a block that is cut short has the lines that came whole") {
  SampleConversation scan;
  Begin(scan).ShortRead(131, Block(40));
  const std::vector<CapturedPage> pages = pmscan::PagesOf(scan.capture);
  CHECK(LinesOf(pages[0]) == Numbers{3});
}

TEST_CASE("a read that fails at once leaves a page without blocks") {
  SampleConversation scan;
  Begin(scan).FailedRead(131, -1);
  const std::vector<CapturedPage> pages = pmscan::PagesOf(scan.capture);
  REQUIRE(pages.size() == 1);
  CHECK(pages[0].blocks.empty());
}

TEST_CASE("a band of a call that failed is none, and does not go to the next page") {
  SampleConversation scan;
  Begin(scan.Call("PMAcquireImage")).Read(Block(130, 0x80));
  scan.Return({{"status", 2}, {"lines", 37}});
  scan.Call("PMInitAcquire").Return({{"status", 1}, {"heightLines", 37}});
  scan.Call("PMAcquireImage").Return({{"status", 1}, {"lines", 5}});
  const std::vector<CapturedPage> pages = pmscan::PagesOf(scan.capture);
  REQUIRE(pages.size() == 1);
  CHECK(pages[0].bands.empty());
}

TEST_CASE("every start of a scan makes a page of its own") {
  SampleConversation scan;
  Begin(scan).Read(Block(130, 0x80));
  Begin(scan).Read(Block(130));
  CHECK(pmscan::PagesOf(scan.capture).size() == 2);
}

TEST_CASE("a page of the standard commands has the shape of the commands one by one") {
  const capture::Capture capture = pmscan::tests::CaptureOf(
      "write 2 : 1B 43\nread 1 : 06\nwrite 1 : 13\nread 1 : 06\n"
      "write 2 : 1B 44\nread 1 : 06\nwrite 1 : 08\nread 1 : 06\n"
      "write 2 : 1B 52\nread 1 : 06\nwrite 4 : 96 00 96 00\nread 1 : 06\n"
      "write 2 : 1B 41\nread 1 : 06\nwrite 8 : 00 00 00 00 03 00 02 00\nread 1 : 06\n"
      "write 2 : 1B 47\nread 6 : 02 00 09 00 01 00\n"
      "read 4 : 02 00 09 00\nread 9 : 01 02 03 04 05 06 07 08 09\nwrite 1 : 06\n"
      "read 4 : 02 20 09 00\nread 9 : 11 12 13 14 15 16 17 18 19\n");
  const std::vector<CapturedPage> pages = pmscan::PagesOf(capture);
  REQUIRE(pages.size() == 1);
  CHECK(pages[0].shape.width == 3);
  CHECK(pages[0].shape.height == 2);
  CHECK(pages[0].shape.dotsPerInch == 150);
  CHECK(pages[0].shape.colorMode == 0x13);
  CHECK(LinesOf(pages[0]) == Numbers{1, 1});
  CHECK(pages[0].blocks[1].data.back() == 0x19);
  CHECK(pages[0].IsWhole());
}

}  // namespace
