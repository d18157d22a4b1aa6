#include "capture/conversation/conversation.h"

#include <doctest/doctest.h>

namespace {

using namespace capture;
using Bytes = std::vector<std::uint8_t>;

struct Fixture {
  Part Write(const Bytes& bytes) { return conversation.Write(bytes); }
  Part Read(const Bytes& bytes) { return conversation.Read(bytes, false); }

  Conversation conversation;
};

TEST_CASE_FIXTURE(Fixture, "conversation: bytes are parameters once the letters are acknowledged") {
  CHECK(Write({0x1B, 'H'}) == Part::kCommand);
  CHECK(Read({0x06}) == Part::kAcknowledge);
  CHECK(Write({0x1B, '@'}) == Part::kParameters);
  CHECK(conversation.Message() == Bytes{0x1B, '@'});
  CHECK(Read({0x06}) == Part::kAcknowledge);
  CHECK(Write({0x1B, '@'}) == Part::kCommand);
}

TEST_CASE_FIXTURE(Fixture, "conversation: parameters may come in pieces") {
  Write({0x1B, 'R'});
  Read({0x06});
  CHECK(Write({0x2C, 0x01}) == Part::kParameters);
  CHECK_FALSE(conversation.IsWhole());
  CHECK(Write({0x58, 0x02}) == Part::kParameters);
  CHECK(conversation.IsWhole());
  CHECK(conversation.Message() == Bytes{0x2C, 0x01, 0x58, 0x02});
}

TEST_CASE_FIXTURE(Fixture, "conversation: a command in the place of parameters is a command") {
  Write({0x1B, 'R'});
  Read({0x06});
  CHECK(Write({0x1B, '@'}) == Part::kCommand);
}

TEST_CASE_FIXTURE(Fixture, "conversation: behind a NAK no parameters are expected") {
  Write({0x1B, 'e'});
  CHECK(Read({0x15}) == Part::kAcknowledge);
  CHECK(Write({0x01}) == Part::kStray);
}

TEST_CASE_FIXTURE(Fixture, "conversation: letters that no scanner knows are told apart") {
  CHECK(Write({0x1B, 'x'}) == Part::kUnknown);
  CHECK(Read({0x06}) == Part::kStray);
}

TEST_CASE_FIXTURE(Fixture,
                  "conversation: a reply is whole with the data that its header declares") {
  Write({0x1B, 'q'});
  CHECK(Read({0x02, 0x00, 0x02, 0x00}) == Part::kReply);
  CHECK_FALSE(conversation.IsWhole());
  CHECK(Read({0x00, 0x48}) == Part::kReply);
  CHECK(conversation.IsWhole());
  CHECK(Read({0x00}) == Part::kStray);
}

TEST_CASE_FIXTURE(Fixture, "conversation: a block is answered, and the next one is read") {
  Write({0x1C, 'G'});
  Read({0x02, 0x00, 0x04, 0, 0, 0, 1, 0, 0, 0, 0x02, 0, 0, 0});
  CHECK(Read({1, 2, 3, 4, 0}) == Part::kBlock);
  CHECK(Read({1}) == Part::kStray);
  CHECK(Write({0x06}) == Part::kBlockAnswer);
  CHECK(conversation.Picture()->Block().number == 2);
  CHECK(Read({1, 2, 0}) == Part::kBlock);
  CHECK(Write({0x06}) == Part::kStray);
}

}  // namespace
