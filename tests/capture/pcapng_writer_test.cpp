#include "capture/pcapng/pcapng_writer.h"

#include <doctest/doctest.h>

#include "tests/capture/sample_conversation.h"

namespace {

using namespace pmddb832::tests;

constexpr std::size_t kSectionHeaderBytes = 44;
constexpr std::size_t kInterfaceBytes = 48;
constexpr std::size_t kPackets = kSectionHeaderBytes + kInterfaceBytes;

Bytes Part(const SampleConversation& sample, std::size_t from, std::size_t count) {
  const Bytes file = capture::ToPcapng(sample.capture);
  REQUIRE(file.size() >= from + count);
  const auto first = file.begin() + static_cast<std::ptrdiff_t>(from);
  return {first, first + static_cast<std::ptrdiff_t>(count)};
}

TEST_CASE("a section header names the byte order, version 1.0 and the program") {
  CHECK(Part({}, 0, kSectionHeaderBytes) ==
        Bytes{0x0A, 0x0D, 0x0D, 0x0A, 44,   0,    0,    0,    0x4D, 0x3C, 0x2B, 0x1A, 1, 0,   0,
              0,    0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 4,    0,    6,    0, 'p', 'm',
              's',  'c',  'a',  'n',  0,    0,    0,    0,    0,    0,    44,   0,    0, 0});
}

TEST_CASE("the interface has link type 249, packets of any length, and a name") {
  CHECK(Part({}, kSectionHeaderBytes, 20) ==
        Bytes{1, 0, 0, 0, kInterfaceBytes, 0, 0, 0, 249, 0, 0, 0, 0, 0, 0, 0, 2, 0, 18, 0});
}

TEST_CASE("a write is a bulk transfer out of the host, with its bytes") {
  SampleConversation sample;
  sample.Write({0x1B, 0x40});
  CHECK(Part(sample, kPackets, 68) ==
        Bytes{6,    0,    0,    0,    68, 0, 0,  0,    0, 0, 0,  0, 0, 0,
              0,    0,    0xE8, 0x03, 0,  0, 29, 0,    0, 0, 29, 0, 0, 0,  //
              27,   0,    1,    0,    0,  0, 0,  0,    0, 0, 0,  0, 0, 0,
              9,    0,    0,    1,    0,  1, 0,  0x02, 3, 2, 0,  0, 0,  //
              0x1B, 0x40, 0,    0,    0,                                //
              0,    0,    0,    0,    68, 0, 0,  0});
}

TEST_CASE("a read is a bulk transfer into the host, and failures keep their result") {
  SampleConversation sample;
  sample.FailedRead(4, -2);
  // Request 1, status, function 9, end of the transfer, bus 1, device 1, endpoint 0x81, bulk.
  CHECK(Part(sample, kPackets + 28, 27) == Bytes{27, 0,    1,    0,    0,    0, 0, 0, 0,
                                                 0,  0xFE, 0xFF, 0xFF, 0xFF, 9, 0, 1, 1,
                                                 0,  1,    0,    0x81, 3,    0, 0, 0, 0});
}

TEST_CASE("image data that was not kept is cut behind the pseudo-header") {
  SampleConversation sample;
  sample.ReadImage(61441, 0);
  CHECK(Part(sample, kPackets + 20, 8) == Bytes{27, 0, 0, 0, 0x1C, 0xF0, 0, 0});
}

TEST_CASE("calls become the comment of the next packet") {
  SampleConversation sample;
  sample.Call("PMFeed").Write({0x19});
  const std::string comment = "host calls PMFeed";
  Bytes option{1, 0, 17, 0};
  option.insert(option.end(), comment.begin(), comment.end());
  CHECK(Part(sample, kPackets + 56, 21) == option);
}

}  // namespace
