#include "capture/decode/decode_commands.h"

#include <doctest/doctest.h>

#include "capture/decode/decode_replies.h"
#include "tests/capture/decode_text.h"

namespace {

using namespace pmddb832::tests;
using pmddb832::FindCommand;

std::string Parameters(const Bytes& command, const Bytes& block) {
  return capture::Joined(capture::DescribeParameters(*FindCommand(command), block));
}

std::string Reply(const Bytes& command, const Bytes& reply) {
  return capture::Joined(capture::DescribeReply(FindCommand(command)->reply, reply));
}

TEST_CASE("a command is told by its letters and its name") {
  CHECK(capture::NameOf(*FindCommand(Bytes{0x1B, '@'})) == "ESC @ reset");
  CHECK(capture::NameOf(*FindCommand(Bytes{0x1C, 'W'})) == "FS W set parameters");
}

TEST_CASE("a byte that is sent alone is told by its name") {
  CHECK(capture::ControlName(0x06) == "ACK");
  CHECK(capture::ControlName(0x18) == "CAN cancel");
  CHECK(capture::ControlName(0x0C) == "FF eject the page");
  CHECK_FALSE(capture::ControlName(0x77).has_value());
}

TEST_CASE("letters of a command that no scanner knows are shown as they are, and so is a reply") {
  SampleConversation sample;
  sample.Write({0x1B, 0x01}).Read({1, 2});
  const std::string told = Told(sample);
  CHECK(HasLine(told, "!!   sent 2 bytes, 1B 01       nothing asked for it"));
  CHECK(HasLine(told, "!!   read 2 bytes              01 02, nothing was to be read"));
}

TEST_CASE("parameters are told by their fields") {
  CHECK(Parameters({0x1B, 'C'}, {0x13}) == "colour mode colour (0x13)");
  CHECK(Parameters({0x1B, 'R'}, {0x2C, 0x01, 0x58, 0x02}) ==
        "main resolution 300 dpi, sub resolution 600 dpi");
  CHECK(Parameters({0x1B, 'p'}, {0xFF}) == "focus position automatic (0xFF)");
}

TEST_CASE("a gamma table is told by its channel and its course") {
  Bytes table{'G'};
  for (int i = 0; i < 256; ++i) table.push_back(static_cast<std::uint8_t>(i));
  CHECK(Parameters({0x1B, 'z'}, table) == "channel green (0x47), table 256 values, straight");
  table[129] = 200;
  CHECK(Parameters({0x1B, 'z'}, table) ==
        "channel green (0x47), table 256 values from 0 over 200 to 255");
}

TEST_CASE("parameters of another size than the command's are shown as bytes") {
  SampleConversation sample;
  sample.Command({0x1B, 'C'}).Write({1, 2, 3});
  CHECK(HasLine(Told(sample), "!!   sent 3 bytes, 01 02 03    nothing asked for it"));
}

TEST_CASE("bytes of the parameter block that must be 0 are told when they are not") {
  Bytes block = SampleParameters();
  block[44] = 0x12;
  CHECK(Parameters({0x1C, 'W'}, block)
            .ends_with("option parameter 0x42, bytes that must be 0 byte 44 0x12"));
}

TEST_CASE("a reply is told by the fields of its command") {
  CHECK(Reply({0x1C, 'F'}, Joined({0x40, 0x84}, Repeated(14, 0))) ==
        "main status not ready (0x40), feeder installed, cover open (0x84), transparency unit "
        "clear");
  CHECK(Reply({0x1B, 'q'}, {2, 0, 2, 0, 0, 0x48}) == "outcome clear, focus position 8 (0x48)");
}

TEST_CASE("a reply that does not begin with STX says so") {
  CHECK(Reply({0x1B, 'F'}, {0x15, 0, 0, 0}) ==
        "start byte 0x15 where STX (2) was expected, header status 0x00");
}

TEST_CASE("an identity without a resolution says so") {
  CHECK(Reply({0x1B, 'I'}, {2, 2, 2, 0, 'B', '8'}) ==
        "header status knows the extended commands (0x02), data not one resolution in 2 bytes");
}

}  // namespace
