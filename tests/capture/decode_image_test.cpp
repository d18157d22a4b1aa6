#include <doctest/doctest.h>

#include "tests/capture/decode_text.h"

namespace {

using namespace pmddb832::tests;

// A transfer of blocks of 16 lines of 100 bytes, the last of 8, is under way.
SampleConversation ExtendedTransfer() {
  SampleConversation sample;
  sample.Command({0x1C, 'W'}, SampleParameters()).Write({0x1C, 'G'}).Read(SampleTransferHeader());
  return sample;
}

SampleConversation StandardSetUp() {
  SampleConversation sample;
  sample.Command({0x1B, 'A'}, {0, 0, 0, 0, 100, 0, 2, 0});
  return sample;
}

TEST_CASE("a block that was cancelled ends the picture, and the scanner acknowledges it") {
  SampleConversation sample = ExtendedTransfer();
  sample.ReadImage(1601, 0).Write({0x18}).Read({0x06}).Write({0x0C}).Read({0x06});
  const std::string told = Told(sample);
  CHECK(HasLine(told, "     block 1 of 3, 16 lines, 1600 bytes, status ok, CAN cancel, ACK"));
  CHECK(HasLine(told, "     FF eject the page         ACK"));
}

TEST_CASE("a block of another length than announced is trouble") {
  SampleConversation sample = ExtendedTransfer();
  sample.ReadImage(1611, 0).Write({0x06});
  CHECK(HasLine(Told(sample),
                "!!   block 1 of 3, 16 lines, 1610 bytes, status ok, the header announced 1600 "
                "bytes, ACK"));
}

TEST_CASE("a block that broke off says how much came") {
  SampleConversation sample = ExtendedTransfer();
  sample.FailedRead(1601, -1);
  CHECK(HasLine(Told(sample),
                "!!   block 1 of 3, the read failed (0xFFFFFFFF), 0 of 1601 bytes came"));
}

TEST_CASE("a transfer that is refused is asked for once more") {
  SampleConversation sample;
  sample.Write({0x1C, 'G'}).Read({0x02, 0x80, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0});
  sample.Write({0x1C, 'G'}).Read(SampleTransferHeader()).ReadImage(1601, 0);
  const std::string told = Told(sample);
  CHECK(told.find("!!   FS G start transfer       status error (0x80)") != std::string::npos);
  CHECK(HasLine(told, "     block 1 of 3, 1600 bytes, status ok"));
}

TEST_CASE("without blocks of several lines each line has a header of four bytes") {
  SampleConversation sample = StandardSetUp();
  sample.Write({0x1B, 'G'}).Read({0x02, 0x00, 100, 0, 1, 0});
  sample.Read({0x02, 0x00, 100, 0}).Read(Repeated(100, 0)).Write({0x06});
  sample.Read({0x02, 0x20, 100, 0}).Read(Repeated(100, 0));
  const std::string told = Told(sample);
  CHECK(HasLine(told, "     block 1 of 2, 1 line, 100 bytes, status ok, ACK"));
  CHECK(HasLine(told, "     block 2 of 2, 1 line, 100 bytes, status ok, last block (0x20)"));
}

TEST_CASE("a start that was refused once is answered with the first line") {
  SampleConversation sample = StandardSetUp();
  sample.Write({0x1B, 'G'}).Read({0x02, 0x80, 0, 0, 0, 0});
  sample.Write({0x1B, 'G'}).Read({0x02, 0x00, 100, 0}).Read(Repeated(100, 0)).Write({0x06});
  CHECK(HasLine(Told(sample), "     block 1 of 2, 1 line, 100 bytes, status ok, ACK"));
}

TEST_CASE("a header that announces no lines is trouble") {
  SampleConversation sample = StandardSetUp();
  sample.Command({0x1B, 'd'}, {1}).Write({0x1B, 'G'}).Read({0x02, 0x00, 100, 0, 1, 0});
  sample.Read(Repeated(100, 0)).Write({0x06}).Read({0x02, 0x00, 100, 0, 0, 0});
  CHECK(HasLine(Told(sample), "!!   block 2 of 2, header that announces no lines"));
}

TEST_CASE("a block that is read in one call and answered in the next stays one") {
  SampleConversation sample;
  sample.Call("PMAcquireImage").Command({0x1C, 'W'}, SampleParameters());
  sample.Write({0x1C, 'G'}).Read(SampleTransferHeader()).ReadImage(1601, 0).Return();
  sample.Call("PMAbortScan").Write({0x18}).Read({0x06}).Return();
  CHECK(HasLine(Told(sample), "     block 1 of 3, CAN cancel, ACK"));
}

}  // namespace
