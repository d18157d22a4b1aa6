#include "capture/decode/decode.h"

#include <doctest/doctest.h>

#include "tests/capture/decode_text.h"

namespace {

using namespace pmddb832::tests;

std::string Write(const Bytes& bytes) {
  return capture::DescribeWrite(bytes);
}

TEST_CASE("a command is told by its letters and its name") {
  CHECK(Write({0x1B, '@'}) == "ESC @ reset");
  CHECK(Write({0x1C, 'W'}) == "FS W set parameters");
}

TEST_CASE("a byte that is sent alone is told by its name") {
  CHECK(Write({0x06}) == "ACK");
  CHECK(Write({0x18}) == "CAN cancel");
  CHECK(Write({0x0C}) == "FF eject the page");
}

TEST_CASE("bytes that are no command are shown as they are") {
  CHECK(Write({0x1B, 0x01}) == "2 bytes 1B 01");
  CHECK(Write({0x77}) == "1 byte 77");
}

TEST_CASE("64 bytes are the parameters of an extended scan") {
  CHECK(Write(SampleParameters())
            .starts_with(
                "parameters: main resolution 300 dpi, sub resolution 300 dpi, area left 8 pixels"));
}

TEST_CASE("parameters behind their command are told by their fields") {
  CHECK(capture::DescribeWrite(Bytes{0x1B, 'C'}, Bytes{0x13}) ==
        "ESC C colour mode: colour (0x13)");
  CHECK(capture::DescribeWrite(Bytes{0x1B, 'R'}, Bytes{0x2C, 0x01, 0x58, 0x02}) ==
        "ESC R resolution: main resolution 300 dpi, sub resolution 600 dpi");
  CHECK(capture::DescribeWrite(Bytes{0x1B, 'p'}, Bytes{0xFF}) ==
        "ESC p focus position: automatic (0xFF)");
}

TEST_CASE("a gamma table is told by its channel and its course") {
  Bytes table{'G'};
  for (int i = 0; i < 256; ++i) table.push_back(static_cast<std::uint8_t>(i));
  CHECK(capture::DescribeWrite(Bytes{0x1B, 'z'}, table) ==
        "ESC z gamma table: channel green (0x47), table 256 values, straight");
  table[129] = 200;
  CHECK(capture::DescribeWrite(Bytes{0x1B, 'z'}, table) ==
        "ESC z gamma table: channel green (0x47), table 256 values from 0 over 200 to 255");
}

TEST_CASE("parameters of another size than the command's are shown as bytes") {
  CHECK(capture::DescribeWrite(Bytes{0x1B, 'C'}, Bytes{1, 2, 3}) == "3 bytes 01 02 03");
}

TEST_CASE("bytes of the parameter block that must be 0 are told when they are not") {
  Bytes block = SampleParameters();
  block[44] = 0x12;
  const std::string told = capture::DescribeWrite(Bytes{0x1C, 'W'}, block);
  CHECK(told.ends_with("option parameter 0x42, bytes that must be 0 byte 44 0x12"));
}

TEST_CASE("a reply is told by the fields of its command") {
  CHECK(capture::DescribeReply(Bytes{0x1C, 'F'}, Joined({0x40, 0x84}, Repeated(14, 0))) ==
        "main status not ready (0x40), feeder installed, cover open (0x84), transparency unit "
        "clear");
  CHECK(capture::DescribeReply(Bytes{0x1B, 'q'}, Bytes{2, 0, 2, 0, 0, 0x48}) ==
        "outcome clear, focus position 8 (0x48)");
  CHECK(capture::DescribeReply(Bytes{0x1B, '@'}, Bytes{0x15}) == "answer NAK");
}

TEST_CASE("a reply that does not begin with STX says so") {
  CHECK(capture::DescribeReply(Bytes{0x1B, 'F'}, Bytes{0x15, 0, 0, 0}) ==
        "start byte 0x15 where STX (2) was expected, header status 0x00");
}

TEST_CASE("an identity without a resolution says so") {
  CHECK(capture::DescribeReply(Bytes{0x1B, 'I'}, Bytes{2, 2, 2, 0, 'B', '8'}) ==
        "header status knows the extended commands (0x02), data not one resolution in 2 bytes");
}

TEST_CASE("the reply to a command that is not known is shown as bytes") {
  CHECK(capture::DescribeReply(Bytes{}, Bytes{1, 2}) == "2 bytes 01 02");
}

}  // namespace
