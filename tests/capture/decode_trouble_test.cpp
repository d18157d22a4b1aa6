#include <doctest/doctest.h>

#include "tests/capture/decode_text.h"

namespace {

using namespace pmddb832::tests;

constexpr auto kFailure = static_cast<std::int32_t>(0x8007048F);

TEST_CASE("a NAK to a command is trouble, and no parameters are expected") {
  SampleConversation sample;
  sample.Write({0x1B, 'e'}).Read({0x15}).Command({0x1B, '@'});
  const std::string told = Told(sample);
  CHECK(HasLine(told, "!!   ESC e option unit         NAK"));
  CHECK(HasLine(told, "     ESC @ reset               ACK"));
}

TEST_CASE("a NAK to parameters is trouble") {
  SampleConversation sample;
  sample.Write({0x1B, 'e'}).Read({0x06}).Write({1}).Read({0x15});
  CHECK(HasLine(Told(sample), "!!   ESC e option unit         ACK, on (1), NAK"));
}

TEST_CASE("an answer that is neither ACK nor NAK is trouble") {
  SampleConversation sample;
  sample.Write({0x1B, '@'}).Read({0x37});
  CHECK(HasLine(Told(sample), "!!   ESC @ reset               0x37, neither ACK nor NAK"));
}

TEST_CASE("a transfer that failed is told with its result") {
  SampleConversation sample;
  sample.Write({0x1C, 'I'}).FailedRead(80, kFailure);
  CHECK(HasLine(Told(sample),
                "!!   FS I identity             the read failed (0x8007048F, the device "
                "is not connected), 0 of 80 bytes came"));
}

TEST_CASE("a read that delivers less than was asked for is trouble") {
  SampleConversation sample;
  sample.Write({0x1B, 'f'}).ShortRead(4, {0x02, 0x00});
  CHECK(Told(sample).find("!!   ESC f status              only 2 of 4 bytes came") !=
        std::string::npos);
}

TEST_CASE("a long wait for an answer is told") {
  SampleConversation sample;
  sample.Command({0x1B, 'p'}, {0xFF}).Write({0x1B, 'q'}).Wait(20'000'000).Read({2, 0, 2, 0});
  sample.Read({0, 0x48});
  CHECK(HasLine(Told(sample),
                "     ESC q focus found         after 20.0 s, outcome clear, focus position 8 "
                "(0x48)"));
}

TEST_CASE("bytes that belong to no command are told with what they are") {
  SampleConversation sample;
  sample.Write({0x06}).Write({1, 2, 3}).Read({0x06});
  const std::string told = Told(sample);
  CHECK(HasLine(told, "!!   sent ACK                  nothing asked for it"));
  CHECK(HasLine(told, "!!   sent 3 bytes, 01 02 03    nothing asked for it"));
  CHECK(HasLine(told, "!!   read 1 byte               06, nothing was to be read"));
}

TEST_CASE("parameters that come in another call than their command are told by its name") {
  SampleConversation sample;
  sample.Call("PMFeed").Write({0x1B, 'e'}).Read({0x06}).Return();
  sample.Call("PMReset").Write({1}).Read({0x06}).Return();
  CHECK(HasLine(Told(sample), "     ESC e option unit         on (1), ACK"));
}

TEST_CASE("trouble names the line of the capture's file") {
  SampleConversation sample;
  sample.Write({0x1B, '@'}).Read({0x15});
  sample.capture.lines = {7, 9};
  CHECK(HasLine(Told(sample), "!!   ESC @ reset               NAK  [line 9]"));
}

TEST_CASE("what is told in rows is marked where the trouble is") {
  SampleConversation sample;
  sample.Write({0x1C, 'F'}).Read(Joined({0x00, 0xCE}, Repeated(14, 0)));
  const std::string told = Told(sample);
  CHECK(HasLine(told, "!!   FS F status               16 bytes"));
  CHECK(HasLine(told, "         main status                   clear"));
  CHECK(HasLine(told,
                "!!       feeder                        installed, error, empty, cover open, paper "
                "jam (0xCE)"));
}

TEST_CASE("of an identity that no module takes whole only the bytes count that it takes") {
  SampleConversation sample;
  sample.Write({0x1B, 'I'}).Read({0x02, 0x00, 0xA0, 0x00});
  sample.Read(Joined({'B', '8'}, Repeated(158, 'R')));
  CHECK(HasLine(Told(sample), "         largest area                  21074 x 21074 pixels"));
}

}  // namespace
