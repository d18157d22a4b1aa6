#include "tests/simulator/simulator_conversation.h"

#include <memory>

namespace simulator_test {

Bytes FromHex(std::string_view text) {
  constexpr std::string_view kDigits = "0123456789ABCDEF";
  Bytes bytes;
  std::size_t digits = 0;
  for (const char c : text) {
    if (c == ' ') continue;
    const std::size_t value = kDigits.find(c);
    REQUIRE(value != std::string_view::npos);
    if (digits++ % 2 == 0) bytes.push_back(0);
    bytes.back() = static_cast<std::uint8_t>(bytes.back() * 16U + value);
  }
  return bytes;
}

std::string ToHex(const Bytes& bytes) {
  constexpr char kDigits[] = "0123456789ABCDEF";
  std::string text;
  for (const std::uint8_t byte : bytes) {
    if (!text.empty()) text += ' ';
    text += {kDigits[byte >> 4], kDigits[byte & 0x0F]};
  }
  return text;
}

void Conversation::Expect(std::string_view hex) {
  const Bytes expected = FromHex(hex);
  CHECK(ToHex(Read(expected.size())) == ToHex(expected));
}

void Conversation::Send(const Bytes& bytes) {
  Bytes copy = bytes;
  REQUIRE(scanner_.RawWriteData(copy.data(), static_cast<std::uint32_t>(copy.size()), nullptr) ==
          0);
}

Bytes Conversation::Read(std::size_t count) {
  Bytes bytes(count);
  auto delivered = static_cast<std::uint32_t>(count);
  REQUIRE(scanner_.RawReadData(bytes.data(), &delivered, nullptr) == 0);
  REQUIRE(delivered == count);
  return bytes;
}

Bytes Conversation::ReadWith(std::int32_t result, std::size_t count) {
  constexpr std::uint8_t kUntouched = 0xEE;
  Bytes bytes(count, kUntouched);
  auto delivered = static_cast<std::uint32_t>(count);
  CHECK(scanner_.RawReadData(bytes.data(), &delivered, nullptr) == result);
  REQUIRE(delivered <= count);
  CHECK(Bytes(bytes.begin() + delivered, bytes.end()) == Bytes(count - delivered, kUntouched));
  bytes.resize(delivered);
  return bytes;
}

namespace {

void SendParameters(Conversation& talk, std::string_view letterAndParameters,
                    std::string_view answer) {
  const std::size_t letter = letterAndParameters.find_first_not_of(' ');
  talk.Send(Bytes{0x1B, static_cast<std::uint8_t>(letterAndParameters.at(letter))});
  talk.Expect("06");
  talk.Send(letterAndParameters.substr(letter + 1));
  talk.Expect(answer);
}

// One step of a conversation, without its sign.
void Step(Conversation& talk, char sign, std::string_view rest) {
  if (sign == '>') return talk.Send(rest);
  if (sign == '<') return talk.Expect(rest);
  if (sign == '+' || sign == '-') return SendParameters(talk, rest, sign == '+' ? "06" : "15");
  std::size_t digits = 0;
  const auto count = static_cast<std::size_t>(std::stoul(std::string(rest), &digits));
  if (sign == '*') {
    CHECK(talk.Read(count).size() == count);
  } else {
    const std::int32_t result = sign == '~' ? 0 : sign == '/' ? kUnplugged : kTimeout;
    CHECK(ToHex(talk.ReadWith(result, count)) == ToHex(FromHex(rest.substr(digits))));
  }
}

}  // namespace

void Converse(pmddb832::StillImageDevice& partner, std::string_view conversation) {
  constexpr std::string_view kSigns = "><*~!/+-";
  INFO(conversation);
  Conversation talk(partner);
  while (!conversation.empty()) {
    REQUIRE(kSigns.find(conversation[0]) != std::string_view::npos);
    const std::size_t end = std::min(conversation.find_first_of(kSigns, 1), conversation.size());
    INFO(conversation.substr(0, end));
    Step(talk, conversation[0], conversation.substr(1, end - 1));
    conversation.remove_prefix(end);
  }
}

namespace {

std::unique_ptr<simulator::Scanner> ScannerOf(const ScannerConfig& config) {
  if (const auto* const extended = std::get_if<simulator::ExtendedScannerConfig>(&config)) {
    return std::make_unique<simulator::ExtendedScanner>(*extended);
  }
  return std::make_unique<simulator::StandardScanner>(std::get<1>(config));
}

}  // namespace

void Play(const ScannerConfig& config, std::string_view conversation) {
  const auto scanner = ScannerOf(config);
  Converse(*scanner, conversation);
  CheckNoViolations(*scanner);
}

void PlayWrongly(const ScannerConfig& config, std::string_view conversation,
                 std::string_view words) {
  INFO(conversation);
  const auto scanner = ScannerOf(config);
  Converse(*scanner, conversation);
  CheckViolation(*scanner, words);
}

void PlayRefused(const ScannerConfig& config, std::string_view conversation,
                 std::string_view words) {
  INFO(conversation);
  const auto scanner = ScannerOf(config);
  Converse(*scanner, conversation);
  CheckRefusal(*scanner, words);
  CheckNoViolations(*scanner);
}

void Put32(Bytes& block, std::size_t offset, std::uint32_t value) {
  for (std::size_t i = 0; i < 4; ++i) {
    block.at(offset + i) = static_cast<std::uint8_t>(value >> (8 * i));
  }
}

Bytes ParameterBlock() {
  return FromHex(
      "64 00 00 00 64 00 00 00 00 00 00 00 00 00 00 00"
      "10 00 00 00 0A 00 00 00 00 08 00 00 04 01 00 00"
      "01 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00"
      "00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00");
}

Bytes With(Bytes block, std::string_view changes) {
  while (!changes.empty()) {
    const std::string change(changes.substr(0, changes.find(',')));
    std::size_t at = std::stoul(change);
    const std::size_t colon = change.find(':');
    for (const std::uint8_t byte : FromHex(change.substr(colon + 1))) block.at(at++) = byte;
    changes.remove_prefix(std::min(change.size() + 1, changes.size()));
  }
  return block;
}

std::string SetUpWith(std::string_view changes, std::string_view answer) {
  return "> 1C 57 < 06 >" + ToHex(With(ParameterBlock(), changes)) + "<" + std::string(answer);
}

simulator::Picture Pattern(std::uint32_t width, std::uint32_t height) {
  simulator::Picture picture{width, height, 100, {}};
  for (std::uint32_t i = 0; i < width * height * 3; ++i) {
    picture.samples.push_back(static_cast<std::uint16_t>(i * 40503 + 12345));
  }
  return picture;
}

simulator::ExtendedScannerConfig SmallFlatbed() {
  simulator::ExtendedScannerConfig config;
  config.identity.basicResolution = 100;
  config.identity.minResolution = 50;
  config.identity.maxResolution = 200;
  config.identity.flatbed = {200, 200};
  config.identity.feeder = {100, 150};
  config.identity.transparencyUnit = {80, 60};
  config.onBed = Pattern(200, 200);
  return config;
}

simulator::ExtendedScannerConfig SmallFeeder(std::size_t pages) {
  simulator::ExtendedScannerConfig config = SmallFlatbed();
  config.optionUnit = simulator::OptionUnit::kFeeder;
  for (std::uint32_t i = 0; i < pages; ++i) config.feederPages.push_back(Pattern(100 - i, 150));
  return config;
}

Bytes ScanAll(Conversation& talk, std::uint32_t lineBytes) {
  talk.Send("1C 47");
  const Bytes header = talk.Read(14);
  const auto number = [&](std::size_t at) {
    return header[at] | header[at + 1] << 8 | header[at + 2] << 16 | header[at + 3] << 24;
  };
  REQUIRE(header[1] == 0);
  Bytes image;
  for (int block = 0; block <= number(6); ++block) {
    const bool last = block == number(6);
    const Bytes data = talk.Read(static_cast<std::size_t>(last ? number(10) : number(2)) + 1);
    CHECK(data.size() % lineBytes == 1 % lineBytes);
    CHECK(data.back() == 0);
    image.insert(image.end(), data.begin(), data.end() - 1);
    if (!last) talk.Send("06");
  }
  return image;
}

Bytes ScanWith(simulator::Scanner& scanner, const Bytes& parameterBlock, std::uint32_t lineBytes) {
  Converse(scanner, "> 1C 57 < 06 >" + ToHex(parameterBlock) + "< 06");
  Conversation talk(scanner);
  return ScanAll(talk, lineBytes);
}

namespace {

void CheckOnly(const std::vector<std::string>& sentences, std::string_view words) {
  REQUIRE(sentences.size() == 1);
  INFO(sentences[0]);
  CHECK(sentences[0].find(words) != std::string::npos);
}

}  // namespace

void CheckNoViolations(const simulator::Scanner& scanner) {
  CHECK(scanner.Violations() == std::vector<std::string>{});
}

void CheckViolation(const simulator::Scanner& scanner, std::string_view words) {
  CheckOnly(scanner.Violations(), words);
}

void CheckRefusal(const simulator::Scanner& scanner, std::string_view words) {
  CheckOnly(scanner.Refusals(), words);
}

}  // namespace simulator_test
