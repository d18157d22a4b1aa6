#include <doctest/doctest.h>

#include <sstream>

#include "capture/file/capture_reader.h"
#include "capture/replay/replaying_device.h"

namespace {

using namespace capture;
using Bytes = std::vector<std::uint8_t>;

constexpr auto kTimeout = static_cast<std::int32_t>(0x80070079);

Capture ReadLines(const std::string& lines) {
  std::istringstream stream("pmddb832 capture 1\n" + lines);
  return ReadCapture(stream, "c.txt");
}

// The device of a capture whose lines, from the second on, are those of one call.
struct Device {
  Device(const std::string& lines, bool isTolerant)
      : capture(ReadLines("call PMAcquireImage\n" + lines)), log(isTolerant), device(capture, log) {
    const bool returns = std::holds_alternative<CallEnd>(capture.entries.back());
    device.BeginCall("PMAcquireImage", 1, capture.entries.size() - (returns ? 1 : 0));
  }

  // The bytes that a read delivers.
  Bytes Read(std::uint32_t count) {
    Bytes buffer(count, 0xEE);
    result = device.RawReadData(buffer.data(), &count, nullptr);
    buffer.resize(count);
    return buffer;
  }
  std::int32_t Write(Bytes bytes) {
    result = device.RawWriteData(bytes.data(), static_cast<std::uint32_t>(bytes.size()), nullptr);
    return result;
  }
  std::size_t DifferencesAtEnd() {
    device.EndCall();
    return log.All().size();
  }

  Capture capture;
  DifferenceLog log;
  ReplayingDevice device;
  std::int32_t result = 0;
};

const std::string kReturn = "return PMAcquireImage\n";
// A command with its answer, then another one.
const std::string kTwoCommands =
    "write 2 : 1C 46\nread 4 : 01 02 03 04\n"
    "write 2 : 1C 53\nread 1 : 06\n" +
    kReturn;

TEST_CASE("replaying device: what the capture tells passes without a difference") {
  Device device(kTwoCommands, false);
  CHECK(device.Write({0x1C, 0x46}) == 0);
  CHECK(device.Read(4) == Bytes{1, 2, 3, 4});
  CHECK(device.Write({0x1C, 0x53}) == 0);
  CHECK(device.Read(1) == Bytes{6});
  CHECK(device.DifferencesAtEnd() == 0);
  CHECK(device.device.Transfers() == 4);
}

TEST_CASE("replaying device: failures of the capture fail again") {
  Device device("write 1 result 8007048F : 06\nread 4 got 1 result 80070079 : 15\n" + kReturn,
                false);
  CHECK(device.Write({0x06}) == static_cast<std::int32_t>(0x8007048F));
  CHECK(device.Read(4) == Bytes{0x15});
  CHECK(device.result == kTimeout);
  CHECK(device.log.All().empty());
}

TEST_CASE("replaying device: strictly, another write is the first difference and the last") {
  Device device(kTwoCommands, false);
  CHECK(device.Write({0x1C, 0x49}) == kTimeout);
  CHECK(device.Write({0x1C, 0x46}) == kTimeout);
  CHECK(device.Read(4).empty());
  REQUIRE(device.DifferencesAtEnd() == 1);
  const Difference& difference = device.log.All()[0];
  CHECK(difference.line == 3);
  CHECK(difference.call == "PMAcquireImage");
  CHECK(difference.expected == "write 2 : 1C 46");
  CHECK(difference.came == "write 2 : 1C 49");
}

TEST_CASE("replaying device: commands are decoded") {
  Device device(kTwoCommands, false);
  device.Write({0x1C, 0x49});
  CHECK(device.log.All()[0].decoded == "expected: FS F status\ncame: FS I identity\n");
}

TEST_CASE("replaying device: where a byte differs is told") {
  Device device("write 3 : 01 02 03\n" + kReturn, false);
  device.Write({0x01, 0x02, 0x13});
  CHECK(device.log.All()[0].decoded ==
        "the first difference is at byte 2, counted from 0: expected 0x03, came 0x13\n");
}

TEST_CASE("replaying device: another length of a read is a difference") {
  Device device("read 4 : 01 02 03 04\n" + kReturn, false);
  CHECK(device.Read(3).empty());
  CHECK(device.result == kTimeout);
  CHECK(device.log.All()[0].expected == "read 4 : 01 02 03 04");
  CHECK(device.log.All()[0].came == "read 3");
}

TEST_CASE("replaying device: a transfer behind the last one of a call is a difference") {
  Device device(kReturn, false);
  device.Write({0x06});
  CHECK(device.log.All()[0].line == 3);
  CHECK(device.log.All()[0].expected == "the return of PMAcquireImage");
}

TEST_CASE("replaying device: a transfer that does not come is a difference") {
  Device device(kTwoCommands, false);
  device.device.EndCall();
  CHECK(device.log.All()[0].line == 3);
  CHECK(device.log.All()[0].expected == "write 2 : 1C 46");
  CHECK(device.log.All()[0].came == "the return of PMAcquireImage");
}

TEST_CASE("replaying device: behind a capture that ends in a call nothing is compared") {
  Device device("write 2 : 1C 47\n", false);
  CHECK(device.Write({0x1C, 0x47}) == 0);
  CHECK(device.Read(14).empty());
  CHECK(device.result == kTimeout);
  CHECK(device.DifferencesAtEnd() == 0);
}

TEST_CASE("replaying device: image data that was not kept comes as zeros with its last byte") {
  Device device("read 130 crc 12345678 last 80\n" + kReturn, false);
  CHECK_FALSE(device.device.HasInvented());
  Bytes expected(130);
  expected.back() = 0x80;
  CHECK(device.Read(130) == expected);
  CHECK(device.device.HasInvented());
}

TEST_CASE("replaying device: tolerantly, a block with other bytes counts as the recorded one") {
  Device device("write 3 : 01 02 03\nread 1 : 06\n" + kReturn, true);
  CHECK(device.Write({1, 9, 3}) == 0);
  CHECK(device.Read(1) == Bytes{6});
  CHECK(device.DifferencesAtEnd() == 1);
}

TEST_CASE("replaying device: tolerantly, a command that comes early skips what is before it") {
  Device device(kTwoCommands, true);
  CHECK(device.Write({0x1C, 0x53}) == 0);
  CHECK(device.Read(1) == Bytes{6});
  CHECK(device.DifferencesAtEnd() == 1);
}

TEST_CASE("replaying device: tolerantly, a command too many is answered as elsewhere") {
  Device device(kTwoCommands, true);
  device.Write({0x1C, 0x46});
  device.Read(4);
  device.Write({0x1C, 0x53});
  device.Read(1);
  CHECK(device.Write({0x1C, 0x46}) == 0);
  CHECK(device.Read(4) == Bytes{1, 2, 3, 4});
  CHECK(device.DifferencesAtEnd() == 1);
}

TEST_CASE("replaying device: tolerantly, an unknown command is acknowledged, and the way goes on") {
  Device device(kTwoCommands, true);
  CHECK(device.Write({0x1C, 0x7A}) == 0);
  CHECK(device.Read(1) == Bytes{6});
  CHECK(device.Read(80).empty());
  CHECK(device.Write({0x1C, 0x46}) == 0);
  CHECK(device.Read(4) == Bytes{1, 2, 3, 4});
  CHECK(device.log.All().size() == 1);
}

TEST_CASE("replaying device: tolerantly, a read that is cut in two gets both parts") {
  Device device("read 4 : 01 02 03 04\nread 1 : 06\n" + kReturn, true);
  CHECK(device.Read(1) == Bytes{1});
  CHECK(device.Read(3) == Bytes{2, 3, 4});
  CHECK(device.Read(1) == Bytes{6});
  CHECK(device.log.All().size() == 1);
}

TEST_CASE("replaying device: tolerantly, reads that are joined get both") {
  Device device("read 1 : 02\nread 3 : 80 01 00\n" + kReturn, true);
  CHECK(device.Read(4) == Bytes{0x02, 0x80, 0x01, 0x00});
  CHECK(device.DifferencesAtEnd() == 1);
}

TEST_CASE("replaying device: tolerantly, a write that is left out is skipped at the read") {
  Device device("write 1 : 06\nread 4 : 01 02 03 04\n" + kReturn, true);
  CHECK(device.Read(4) == Bytes{1, 2, 3, 4});
  CHECK(device.DifferencesAtEnd() == 1);
}

TEST_CASE("replaying device: tolerantly, more than there is to read times out") {
  Device device("read 2 : 01 02\n" + kReturn, true);
  CHECK(device.Read(5) == Bytes{1, 2});
  CHECK(device.result == kTimeout);
}

}  // namespace
