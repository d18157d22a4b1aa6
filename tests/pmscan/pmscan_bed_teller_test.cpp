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
  CHECK(Ask(teller) == expected);
  CHECK(device.written == std::vector<std::uint8_t>{0x1C, 'I'});
}

TEST_CASE("pmscan: a bed that level B3 does not tell is as large as can be") {
  IdentityDevice device("B3", 0);
  BedTeller teller(device, true);
  Identity expected = device.identity;
  expected[1] = '4';
  for (const std::size_t place : {20u, 21u, 24u, 25u}) expected[place] = 0xFF;
  CHECK(Ask(teller) == expected);
}

TEST_CASE("pmscan: identities of other levels, other replies and failures pass as they are") {
  for (const char* level : {"B4", "B8", "A3", "C3"}) {
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

}  // namespace
