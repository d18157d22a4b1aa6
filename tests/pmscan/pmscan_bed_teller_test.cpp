#include <doctest/doctest.h>

#include <algorithm>
#include <array>
#include <cstring>
#include <vector>

#include "pmscan/devices/bed_teller.h"

// What stands before scanners that tell no bed.

namespace {

using pmscan::BedTeller;
using Identity = std::array<std::uint8_t, 80>;

// Answers every read with one identity.
class IdentityDevice final : public pmddb832::RawDevice {
 public:
  IdentityDevice(const char* level, std::uint8_t bedWidth) {
    std::memcpy(identity.data(), level, 2);
    identity[20] = bedWidth;
    identity[24] = 7;
  }
  std::int32_t RawReadData(void* buffer, std::uint32_t* byteCount, void*) override {
    std::memcpy(buffer, identity.data(), std::min<std::size_t>(*byteCount, identity.size()));
    return result;
  }
  std::int32_t RawWriteData(void* buffer, std::uint32_t byteCount, void*) override {
    const auto* const bytes = static_cast<const std::uint8_t*>(buffer);
    written.assign(bytes, bytes + byteCount);
    return 0;
  }

  Identity identity{};
  std::int32_t result = 0;
  std::vector<std::uint8_t> written;
};

// The sizes of feeder and transparency unit, which these scanners do not tell.
constexpr std::size_t kOptionUnits[] = {28, 29, 32, 33, 36, 37, 40, 41};

Identity Ask(BedTeller& teller, std::uint8_t prefix = 0x1C) {
  std::array<std::uint8_t, 2> command{prefix, 'I'};
  teller.RawWriteData(command.data(), 2, nullptr);
  Identity answer{};
  std::uint32_t count = 80;
  teller.RawReadData(answer.data(), &count, nullptr);
  return answer;
}

TEST_CASE("pmscan: a bed that level B3 tells becomes known by level B4") {
  IdentityDevice device("B3", 9);
  BedTeller teller(device, true);
  Identity expected = device.identity;
  expected[1] = '4';
  for (const std::size_t place : kOptionUnits) expected[place] = 0xFF;
  CHECK(Ask(teller) == expected);
  CHECK(device.written == std::vector<std::uint8_t>{0x1C, 'I'});
}

TEST_CASE("pmscan: a bed that level B3 does not tell is as large as can be") {
  IdentityDevice device("B3", 0);
  BedTeller teller(device, true);
  Identity expected = device.identity;
  expected[1] = '4';
  for (const std::size_t place : {20u, 21u, 24u, 25u}) expected[place] = 0xFF;
  for (const std::size_t place : kOptionUnits) expected[place] = 0xFF;
  CHECK(Ask(teller) == expected);
}

TEST_CASE("pmscan: a bed that a higher level does not tell is as large as can be") {
  IdentityDevice device("B8", 9);
  device.identity[28] = device.identity[32] = device.identity[36] = device.identity[40] = 5;
  BedTeller teller(device, true);
  CHECK(Ask(teller) == device.identity);
  device.identity[20] = 0;
  Identity expected = device.identity;
  for (const std::size_t place : {20u, 21u, 24u, 25u}) expected[place] = 0xFF;
  CHECK(Ask(teller) == expected);
  pmddb832::ScannerSettings settings{};
  settings.commandLevel = 8;
  teller.CorrectLevel(settings);
  CHECK(settings.commandLevel == 8);
}

TEST_CASE("pmscan: identities of unknown levels, other replies and failures pass as they are") {
  for (const char* level : {"B2", "B9", "A3", "C3"}) {
    IdentityDevice device(level, 0);
    BedTeller teller(device, true);
    CHECK(Ask(teller) == device.identity);
  }
  IdentityDevice lowest("B3", 0);
  BedTeller off(lowest, false);
  CHECK(Ask(off) == lowest.identity);
  BedTeller on(lowest, true);
  CHECK(Ask(on, 0x1B) == lowest.identity);
  lowest.result = -1;
  CHECK(Ask(on) == lowest.identity);
}

TEST_CASE("pmscan: the record of a scanner of level B3 says so") {
  IdentityDevice device("B3", 9);
  BedTeller teller(device, true);
  pmddb832::ScannerSettings settings{};
  settings.commandLevel = 2;
  settings.halftoneInfo = 8;
  teller.CorrectLevel(settings);
  CHECK(settings.commandLevel == 2);
  Ask(teller);
  teller.CorrectLevel(settings);
  CHECK(settings.commandLevel == 1);
  CHECK(settings.commandLevelText[1] == '3');
  CHECK(settings.levelGroup == 4);
  CHECK(settings.halftoneInfo == 4);
}

// Answers each read with the next of its replies.
class RepliesDevice final : public pmddb832::RawDevice {
 public:
  std::int32_t RawReadData(void* buffer, std::uint32_t* byteCount, void*) override {
    const std::vector<std::uint8_t>& reply = replies.at(next++);
    *byteCount = static_cast<std::uint32_t>(reply.size());
    std::copy(reply.begin(), reply.end(), static_cast<std::uint8_t*>(buffer));
    return 0;
  }
  std::int32_t RawWriteData(void*, std::uint32_t, void*) override { return 0; }

  std::vector<std::vector<std::uint8_t>> replies;
  std::size_t next = 0;
};

// The data of the reply to ESC and the letter, behind its header.
std::vector<std::uint8_t> DataOf(BedTeller& teller, char letter) {
  std::array<std::uint8_t, 2> command{0x1B, static_cast<std::uint8_t>(letter)};
  teller.RawWriteData(command.data(), 2, nullptr);
  std::vector<std::uint8_t> data(150);
  for (int read = 0; read < 2; ++read) {
    auto count = static_cast<std::uint32_t>(data.size());
    teller.RawReadData(data.data(), &count, nullptr);
    if (read == 1) data.resize(count);
  }
  return data;
}

TEST_CASE(
    "pmscan: a bed that standard commands do not tell is 15 inches wide, and as high as can be") {
  RepliesDevice device;
  BedTeller teller(device, true);
  // 50 and 300 dots per inch; 4500 pixels, and the most that 16 bits hold.
  device.replies = {{2, 0, 13, 0}, {'B', '8', 'R', 50, 0, 'R', 0x2C, 1, 'A', 0, 0, 9, 0}};
  CHECK(DataOf(teller, 'I') ==
        std::vector<std::uint8_t>{'B', '8', 'R', 50, 0, 'R', 0x2C, 1, 'A', 0x94, 0x11, 0xFF, 0xFF});
}

TEST_CASE("pmscan: a bed at a low resolution is not told beyond 16 bits of hundredths of an inch") {
  RepliesDevice device;
  BedTeller teller(device, true);
  // 750 pixels are 15 inches, and 32767 pixels 655.34 of them.
  device.replies = {{2, 0, 10, 0}, {'B', '4', 'R', 50, 0, 'A', 9, 0, 0, 0}};
  CHECK(DataOf(teller, 'I') ==
        std::vector<std::uint8_t>{'B', '4', 'R', 50, 0, 'A', 0xEE, 2, 0xFF, 0x7F});
}

TEST_CASE("pmscan: option units that standard commands do not tell are as large as the bed") {
  RepliesDevice device;
  BedTeller teller(device, true);
  device.replies = {{2, 0, 10, 0}, {'B', '8', 'R', 200, 0, 'A', 9, 0, 9, 0},
                    {2, 0, 11, 0}, {0, 0x80, 0, 0, 0, 0, 0x80, 3, 0, 4, 0},
                    {2, 0, 11, 0}, {0, 0x80, 7, 0, 8, 0, 0x80, 0, 0, 0, 0}};
  CHECK(DataOf(teller, 'I') == device.replies[1]);
  CHECK(DataOf(teller, 'f') ==
        std::vector<std::uint8_t>{0, 0x80, 0xB8, 0x0B, 0xFF, 0xFF, 0x80, 3, 0, 4, 0});
  CHECK(DataOf(teller, 'f') ==
        std::vector<std::uint8_t>{0, 0x80, 7, 0, 8, 0, 0x80, 0xB8, 0x0B, 0xFF, 0xFF});
}

TEST_CASE("pmscan: standard replies that tell a bed, or are no identity, pass as they are") {
  RepliesDevice device;
  BedTeller teller(device, true);
  device.replies = {{2, 0, 10, 0}, {'B', '8', 'R', 200, 0, 'A', 9, 0, 9, 0},
                    {2, 0, 2, 0},  {'B', '8'},
                    {2, 0, 3, 0},  {0, 0x80, 0}};
  CHECK(DataOf(teller, 'I') == device.replies[1]);
  CHECK(DataOf(teller, 'I') == device.replies[3]);
  CHECK(DataOf(teller, 'f') == device.replies[5]);
  BedTeller off(device, false);
  device.next = 0;
  device.replies = {{2, 0, 10, 0}, {'B', '8', 'R', 200, 0, 'A', 0, 0, 0, 0}};
  CHECK(DataOf(off, 'I') == device.replies[1]);
}

}  // namespace
