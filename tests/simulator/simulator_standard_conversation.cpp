#include "tests/simulator/simulator_standard_conversation.h"

namespace simulator_test {
namespace {

std::size_t Number16(const Bytes& bytes, std::size_t at) {
  return bytes[at] | static_cast<std::size_t>(bytes[at + 1]) << 8;
}

}  // namespace

simulator::StandardScannerConfig SmallStandard(std::string_view level) {
  simulator::StandardScannerConfig config;
  config.identity.level = level;
  config.identity.resolutions = {50, 100};
  config.identity.flatbed = {200, 200};
  config.identity.feeder = {96, 150};
  config.identity.transparencyUnit = {80, 60};
  config.onBed = Pattern(200, 200);
  return config;
}

simulator::StandardScannerConfig SmallStandardFeeder(std::size_t pages) {
  simulator::StandardScannerConfig config = SmallStandard();
  config.optionUnit = simulator::OptionUnit::kFeeder;
  for (std::uint32_t i = 0; i < pages; ++i) config.feederPages.push_back(Pattern(96 - i, 150));
  return config;
}

std::string Upload(std::string_view changes) {
  std::string upload =
      "+ C 00 + D 08 + R 64 00 64 00 + H 64 64 + A 00 00 00 00 10 00 0A 00 + d 04 ";
  while (!changes.empty()) {
    const std::size_t comma = std::min(changes.find(','), changes.size());
    std::string_view command = changes.substr(0, comma);
    changes.remove_prefix(std::min(changes.find_first_not_of(" ", comma + 1), changes.size()));
    const bool leavesOut = command.starts_with('-');
    if (leavesOut) command.remove_prefix(1);
    const std::size_t at = std::min(upload.find("+ " + std::string(1, command[0])), upload.size());
    const std::size_t end = std::min(upload.find('+', at + 1), upload.size());
    const std::string by = leavesOut ? "" : "+ " + std::string(command) + ' ';
    upload.replace(at, end - at, by);
  }
  return upload;
}

Bytes StandardScanAll(simulator::Scanner& scanner, bool lineMode) {
  Conversation talk(scanner);
  talk.Send("1B 47");
  if (lineMode) talk.Read(6);
  Bytes image;
  for (bool last = false; !last;) {
    const Bytes header = talk.Read(lineMode ? 4 : 6);
    REQUIRE(header[0] == 0x02);
    last = (header[1] & 0x20) != 0;
    const Bytes lines = talk.Read(Number16(header, 2) * (lineMode ? 1 : Number16(header, 4)));
    image.insert(image.end(), lines.begin(), lines.end());
    if (!last) talk.Send("06");
  }
  return image;
}

}  // namespace simulator_test
