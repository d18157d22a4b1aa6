#pragma once

#include <doctest/doctest.h>

#include <algorithm>
#include <cstdint>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

#include "simulator/extended/extended_scanner.h"
#include "simulator/standard/standard_scanner.h"

namespace simulator_test {

using Bytes = std::vector<std::uint8_t>;

// The bytes of "1C 49"; blanks are free.
Bytes FromHex(std::string_view text);
std::string ToHex(const Bytes& bytes);

// Results of the device interface.
inline constexpr auto kTimeout = static_cast<std::int32_t>(0x80070079);
inline constexpr auto kUnplugged = static_cast<std::int32_t>(0x8007048F);

// The driver's side of the wire, spoken by a test.
class Conversation {
 public:
  explicit Conversation(pmddb832::StillImageDevice& partner) : scanner_(partner) {}

  void Send(const Bytes& bytes);
  void Send(std::string_view hex) { Send(FromHex(hex)); }

  // Reads `count` bytes, all of which must come.
  Bytes Read(std::size_t count);

  // Reads as many bytes as `hex` has and checks them.
  void Expect(std::string_view hex);

  // A read that must end with this result, and what it delivered; the rest of its buffer must stay
  // as it was.
  Bytes ReadWith(std::int32_t result, std::size_t count);
  // A read that must time out.
  Bytes ReadInVain(std::size_t count) { return ReadWith(kTimeout, count); }

 private:
  pmddb832::StillImageDevice& scanner_;
};

// Speaks a conversation with a scanner, in hexadecimal bytes and decimal counts:
//
//   > 1C 46     sends these bytes
//   + R 64 00   sends ESC R and these parameters; each is acknowledged
//   - R 64 00   the same, but the parameters are answered with NAK
//   < 06        reads as many bytes, which must be these
//   * 64        reads so many, whichever they are
//   ~ 16 06     reads so many, and gets these with success
//   ! 16 15     reads so many in vain, and gets these until time runs out
//   / 16 15     reads so many, and gets these until the cable is unplugged
void Converse(pmddb832::StillImageDevice& partner, std::string_view conversation);

// The same with a scanner of that description, which must find nothing wrong with it; or exactly
// one violation that contains `words`; or make exactly one refusal that does, and find nothing
// wrong.
using ScannerConfig =
    std::variant<simulator::ExtendedScannerConfig, simulator::StandardScannerConfig>;
void Play(const ScannerConfig& config, std::string_view conversation);
void PlayWrongly(const ScannerConfig& config, std::string_view conversation,
                 std::string_view words);
void PlayRefused(const ScannerConfig& config, std::string_view conversation,
                 std::string_view words);

// A parameter block, 64 bytes: 100 dpi, the area 0, 0, 16 x 10, grey, 8 bits, 4 lines per block,
// gamma 1.0, no halftone.
Bytes ParameterBlock();
void Put32(Bytes& block, std::size_t offset, std::uint32_t value);

// FS W with that block, and with one from the option unit, as conversations.
// One for each source: those of a source that are made of it must find it made.
const std::string kSetUp =
    "> 1C 57 < 06"
    "> 64 00 00 00 64 00 00 00 00 00 00 00 00 00 00 00 10 00 00 00 0A 00 00 00 00 08 00 00 04 01 "
    "00 00"
    "01 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 "
    "00"
    "< 06";
const std::string kSetUpOption =
    "> 1C 57 < 06"
    "> 64 00 00 00 64 00 00 00 00 00 00 00 00 00 00 00 10 00 00 00 0A 00 00 00 00 08 01 00 04 01 "
    "00 00"
    "01 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 "
    "00"
    "< 06";

// A block with other bytes at several places: "16: C9 00, 28: 00"; FS W with ParameterBlock() and
// such bytes, as a conversation.
Bytes With(Bytes block, std::string_view changes);
std::string SetUpWith(std::string_view changes, std::string_view answer = "06");

// 100 dpi, every sample different from its neighbours.
simulator::Picture Pattern(std::uint32_t width, std::uint32_t height);

// A flatbed of 200 x 200 pixels at 100 dpi (basic, 50 to 200 dpi) with Pattern(200, 200) on it.
simulator::ExtendedScannerConfig SmallFlatbed();

// The same with a document feeder of 100 x 150 pixels and so many pages of that size.
simulator::ExtendedScannerConfig SmallFeeder(std::size_t pages);

// A scanner with defects, as in "late-nak=W" or "fatal-error+warm-up=3".
template <class Config>
Config Spoiled(Config config, std::string_view defects) {
  while (!defects.empty()) {
    const std::size_t plus = std::min(defects.find('+'), defects.size());
    SwitchOn(config.defects, defects.substr(0, plus));
    defects.remove_prefix(std::min(plus + 1, defects.size()));
  }
  return config;
}

// FS G and all the blocks it announces, acknowledged; returns the image data without status bytes.
Bytes ScanAll(Conversation& talk, std::uint32_t lineBytes);

// Sends the block and scans: what a driver does for one page.
Bytes ScanWith(simulator::Scanner& scanner, const Bytes& parameterBlock, std::uint32_t lineBytes);

void CheckNoViolations(const simulator::Scanner& scanner);
// Exactly one violation, that contains `words`.
void CheckViolation(const simulator::Scanner& scanner, std::string_view words);
void CheckRefusal(const simulator::Scanner& scanner, std::string_view words);

}  // namespace simulator_test
