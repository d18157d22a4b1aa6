#include "tests/simulator/simulator_standard_conversation.h"

namespace simulator_test {
namespace {

void Append16(Bytes& bytes, std::uint16_t value) {
  bytes.push_back(static_cast<std::uint8_t>(value));
  bytes.push_back(static_cast<std::uint8_t>(value >> 8));
}

std::size_t Number16(const Bytes& bytes, std::size_t at) {
  return bytes[at] | static_cast<std::size_t>(bytes[at + 1]) << 8;
}

Bytes Command(char letter) {
  return {0x1B, static_cast<std::uint8_t>(letter)};
}

void Set(simulator::Scanner& scanner, char letter, const Bytes& parameters) {
  CheckParameters(scanner, letter, ToHex(parameters), "06");
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

Bytes StandardScan::Area() const {
  Bytes area;
  for (const std::uint16_t value : {left, top, width, height}) Append16(area, value);
  return area;
}

void Play(const simulator::StandardScannerConfig& config, std::string_view conversation) {
  simulator::StandardScanner scanner(config);
  Converse(scanner, conversation);
  CheckNoViolations(scanner);
}

void Upload(simulator::Scanner& scanner, const StandardScan& scan) {
  Set(scanner, 'C', {scan.colorMode});
  Set(scanner, 'D', {scan.bits});
  Bytes resolutions;
  Append16(resolutions, scan.resolution);
  Append16(resolutions, scan.resolution);
  Set(scanner, 'R', resolutions);
  Set(scanner, 'H', {scan.zoom, scan.zoom});
  Set(scanner, 'A', scan.Area());
  if (scan.linesPerBlock != 0) Set(scanner, 'd', {scan.linesPerBlock});
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

void CheckParameters(simulator::Scanner& scanner, char letter, std::string_view parameters,
                     std::string_view answer) {
  INFO("ESC " << letter << " " << parameters);
  Conversation talk(scanner);
  talk.Send(Command(letter));
  talk.Expect("06");
  talk.Send(parameters);
  talk.Expect(answer);
}

}  // namespace simulator_test
