#include <doctest/doctest.h>

#include "tests/interface/module_fixture.h"
#include "tests/interface/recording_command_set.h"
#include "transport/focus_query.h"
#include "wire/focus.h"

namespace pmddb832::tests {
namespace {

struct FocusFixture : ModuleFixture {
  FocusFixture() { MakeChannel(); }

  // ESC "q" and a reply whose header declares as many bytes as `data` has.
  std::uint8_t PositionFrom(const Bytes& data) {
    const auto count = static_cast<std::uint8_t>(data.size());
    device.Expect({0x1B, 0x71}).Reply({0x02, 0x00, count, 0x00}).Reply(data);
    return ReadFocusPosition(set, CallNow(), buffer);
  }

  RecordingCommandSet set;
  ReplyBuffer buffer{};
};

}  // namespace

TEST_CASE("a position is offset by 0x40 on the wire, in eight bits") {
  CHECK(WireFocusPosition(0) == 0x40);
  CHECK(WireFocusPosition(0xBF) == 0xFF);
  CHECK(WireFocusPosition(0xC0) == 0x00);
  CHECK(HostFocusPosition(0x40) == 0);
  CHECK(HostFocusPosition(0xFE) == 0xBE);
  CHECK(HostFocusPosition(0x00) == 0xC0);
}

TEST_CASE("an unknown position is 156 for the host") {
  CHECK(HostFocusPosition(0xFF) == 156);
}

TEST_CASE_FIXTURE(FocusFixture, "the second byte is the position that automatic focus found") {
  CHECK(PositionFrom({0x00, 0x52}) == 0x52);
  CHECK(PositionFrom({0xFE, 0x53, 0x99}) == 0x53);
  CHECK(PositionFrom({0x00, 0xFF}) == 0xFF);
}

TEST_CASE_FIXTURE(FocusFixture, "bit 0 of the first byte says that focus failed") {
  CHECK(PositionFrom({0x01, 0x52}) == 0xFF);
  CHECK(PositionFrom({0xFF, 0x52}) == 0xFF);
}

TEST_CASE_FIXTURE(FocusFixture, "a reply that cannot hold a position tells none") {
  CHECK(PositionFrom({}) == 0xFF);
  CHECK(PositionFrom({0x00}) == 0xFF);
}

TEST_CASE_FIXTURE(FocusFixture, "a reply of 150 bytes fits, a longer one is not read") {
  CHECK(PositionFrom(Bytes{0x00, 0x60} + Fill(148, 0xAA)) == 0x60);
  device.Expect({0x1B, 0x71}).Reply({0x02, 0x00, 0x97, 0x00});
  CHECK(ReadFocusPosition(set, CallNow(), buffer) == 0xFF);
  device.Expect({0x1B, 0x71}).Reply({0x02, 0x00, 0xFF, 0xFF});
  CHECK(ReadFocusPosition(set, CallNow(), buffer) == 0xFF);
}

TEST_CASE_FIXTURE(FocusFixture, "a header without STX is not followed by a read") {
  device.Expect({0x1B, 0x71}).Reply({0x15, 0x00, 0x02, 0x00});
  CHECK(ReadFocusPosition(set, CallNow(), buffer) == 0xFF);
}

TEST_CASE_FIXTURE(FocusFixture, "every transfer of the query may fail") {
  for (const std::string_view query : {">!", "> 1B 71 <!", "> 1B 71 < 02 00 02 00 <!"}) {
    CAPTURE(query);
    device.Converse(query);
    CHECK(ReadFocusPosition(set, CallNow(), buffer) == 0xFF);
  }
}

}  // namespace pmddb832::tests
