#include <doctest/doctest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <sstream>

#include "capture/file/capture_reader.h"
#include "capture/pcapng/pcapng_writer.h"
#include "tests/capture/sample_conversation.h"
#include "tests/wireshark/decoded_packets.h"
#include "tests/wireshark/random_captures.h"
#include "tests/wireshark/wireshark.h"

// The dissector follows a conversation by the same rules as decode: the same commands, the same
// fields, the same troubles, packet by packet.

namespace pmddb832::tests {
namespace {

constexpr std::uint32_t kRandomCaptures = 200;

// Many captures in one file, each as a device of its own.
Bytes MergedFile(const std::vector<capture::Capture>& captures) {
  constexpr std::size_t kFrontBytes = 92;  // of the section and its interface
  constexpr std::size_t kDevicePlace = 28 + 19;
  Bytes file = capture::ToPcapng({});
  for (std::size_t i = 0; i < captures.size(); ++i) {
    Bytes packets = capture::ToPcapng(captures[i]);
    for (std::size_t at = kFrontBytes; at < packets.size();) {
      packets[at + kDevicePlace] = static_cast<std::uint8_t>(i + 1);
      packets[at + kDevicePlace + 1] = static_cast<std::uint8_t>((i + 1) >> 8);
      at += packets[at + 4] | static_cast<std::size_t>(packets[at + 5]) << 8 |
            static_cast<std::size_t>(packets[at + 6]) << 16;
    }
    file.insert(file.end(), packets.begin() + kFrontBytes, packets.end());
  }
  return file;
}

std::vector<std::string> Split(const std::string& line) {
  std::vector<std::string> parts;
  std::istringstream stream(line + "|");
  for (std::string part; std::getline(stream, part, '|');) parts.push_back(part);
  return parts;
}

// One of the severities, from a warning on.
bool IsTrouble(const std::string& severities) {
  constexpr unsigned long kWarning = 0x600000;
  std::istringstream stream(severities);
  for (std::string severity; std::getline(stream, severity, ',');) {
    if (!severity.empty() && std::stoul(severity) >= kWarning) return true;
  }
  return false;
}

// What the dissector shows otherwise than decode tells it; empty when nothing.
std::string Differences(const DecodedPacket& decoded, const std::vector<std::string>& shown) {
  std::string text;
  for (std::size_t i = 0; i < decoded.fields.size(); ++i) {
    if (decoded.fields[i] == shown[i] || decoded.fields[i] == kUnprintable) continue;
    text += DecodedFields()[i] + ": decode " + decoded.fields[i] + ", shown " + shown[i] + "; ";
  }
  const bool isMarked = IsTrouble(shown.back());
  if (decoded.isBehindTrouble || isMarked == decoded.hasTrouble) return text;
  return text + (isMarked ? "marked as trouble without need" : "trouble is not marked");
}

// Returns in how many transfers decode found trouble first.
std::size_t CompareAll(const std::vector<capture::Capture>& captures) {
  std::vector<std::string> fields = DecodedFields();
  fields.emplace_back("_ws.expert.severity");
  const Dissection dissection(MergedFile(captures), fields);
  std::size_t packet = 0;
  std::size_t troubles = 0;
  for (std::size_t i = 0; i < captures.size(); ++i) {
    const std::vector<DecodedPacket> decoded = DecodedPackets(captures[i]);
    for (std::size_t transfer = 0; transfer < decoded.size(); ++transfer) {
      const std::string text = Differences(decoded[transfer], Split(dissection.Packet(++packet)));
      if (decoded[transfer].hasTrouble && !decoded[transfer].isBehindTrouble) ++troubles;
      CHECK_MESSAGE(text.empty(), "capture ", i, ", transfer ", transfer, ": ", text);
    }
  }
  CHECK(packet == dissection.Packets());
  return troubles;
}

TEST_CASE("the dissector tells the captures of the tests as decode does") {
  std::vector<capture::Capture> captures{ExtendedSample().capture, StandardSample().capture};
  for (const auto& file : std::filesystem::directory_iterator(PMDDB832_CAPTURES)) {
    std::ifstream stream(file.path());
    captures.push_back(capture::ReadCapture(stream, file.path().string()));
  }
  CHECK(captures.size() > 10);
  CHECK(CompareAll(captures) >= 5);
}

TEST_CASE("the dissector tells 200 random captures as decode does") {
  std::vector<capture::Capture> captures;
  for (std::uint32_t number = 1; number <= kRandomCaptures; ++number) {
    captures.push_back(RandomCapture(number));
  }
  CHECK(CompareAll(captures) > 400);
}

}  // namespace
}  // namespace pmddb832::tests
