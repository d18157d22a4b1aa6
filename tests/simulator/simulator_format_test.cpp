#include <doctest/doctest.h>

#include "simulator/device/line_format.h"
#include "simulator/extended/extended_scanner.h"
#include "tests/simulator/simulator_conversation.h"

// The form of a line in each depth and colour mode, and its gamma tables.

using namespace simulator_test;
using simulator::ColorMode;
using simulator::ScanRequest;

namespace {

// Four pixels: red, green and blue of each.
const std::vector<std::uint16_t> kFourPixels{0x1234, 0x5678, 0x9ABC, 0xFEDC, 0xBA98, 0x7654,
                                             0x0000, 0x8000, 0xFFFF, 0x1111, 0x2222, 0x3333};

ScanRequest Request(ColorMode mode, std::uint8_t bits) {
  ScanRequest request;
  request.width = 4;
  request.height = 1;
  request.colorMode = mode;
  request.bits = bits;
  return request;
}

void CheckLine(const ScanRequest& request, std::string_view hex) {
  Bytes line;
  simulator::AppendLine(request, kFourPixels, line);
  CHECK(ToHex(line) == ToHex(FromHex(hex)));
  CHECK(line.size() == simulator::LineBytes(request));
}

Bytes Inverting() {
  Bytes table(256);
  for (std::size_t i = 0; i < 256; ++i) table[i] = static_cast<std::uint8_t>(255 - i);
  return table;
}

Bytes Identity() {
  Bytes table(256);
  for (std::size_t i = 0; i < 256; ++i) table[i] = static_cast<std::uint8_t>(i);
  return table;
}

}  // namespace

TEST_CASE("simulator: colour of 8 bits is three bytes a pixel, red first with 13, blue with 23") {
  CheckLine(Request(ColorMode::kRedGreenBlue, 8), "12 56 9A FE BA 76 00 80 FF 11 22 33");
  CheckLine(Request(ColorMode::kBlueGreenRed, 8), "9A 56 12 76 BA FE FF 80 00 33 22 11");
}

TEST_CASE("simulator: one channel of 8 bits is one byte a pixel") {
  CheckLine(Request(ColorMode::kRed, 8), "12 FE 00 11");
  CheckLine(Request(ColorMode::kGreen, 8), "56 BA 80 22");
  CheckLine(Request(ColorMode::kBlue, 8), "9A 76 FF 33");
}

TEST_CASE("simulator: grey is 0.299 red + 0.587 green + 0.114 blue") {
  CheckLine(Request(ColorMode::kGrey, 16), "D7 49 39 C7 52 68 FA 1E");
}

TEST_CASE("simulator: grey of equal channels is that value") {
  for (const std::uint16_t value : std::vector<std::uint16_t>{0, 1, 0x7FFF, 0x8000, 0xFFFF}) {
    Bytes line;
    ScanRequest request = Request(ColorMode::kGrey, 16);
    request.width = 1;
    simulator::AppendLine(request, std::vector<std::uint16_t>{value, value, value}, line);
    CHECK((line[0] | line[1] << 8) == value);
  }
}

TEST_CASE("simulator: samples of 12 to 16 bits are little-endian with their bits at the high end") {
  CheckLine(Request(ColorMode::kGreen, 12), "70 56 90 BA 00 80 20 22");
  CheckLine(Request(ColorMode::kGreen, 14), "78 56 98 BA 00 80 20 22");
  CheckLine(Request(ColorMode::kGreen, 16), "78 56 98 BA 00 80 22 22");
  CheckLine(Request(ColorMode::kRedGreenBlue, 16),
            "34 12 78 56 BC 9A DC FE 98 BA 54 76 00 00 00 80 FF FF 11 11 22 22 33 33");
}

TEST_CASE("simulator: 1 bit is 8 pixels a byte, the left one high, white is 1") {
  ScanRequest request = Request(ColorMode::kGreen, 1);
  CheckLine(request, "60");
  request.mirrored = true;
  CheckLine(request, "60");
  request.colorMode = ColorMode::kRed;
  CheckLine(request, "20");
}

TEST_CASE("simulator: 4 bits are two pixels in three bytes, and the line 2 bytes a pixel") {
  CheckLine(Request(ColorMode::kRedGreenBlue, 4), "1F 5B 97 01 82 F3 00 00");
  CheckLine(Request(ColorMode::kBlueGreenRed, 4), "97 5B 1F F3 82 01 00 00");
  CheckLine(Request(ColorMode::kBlue, 4), "97 97 97 F3 F3 F3 00 00");
}

TEST_CASE("simulator: 4 bits of an odd width leave the last low nibbles empty") {
  ScanRequest request = Request(ColorMode::kRedGreenBlue, 4);
  request.width = 3;
  Bytes line;
  simulator::AppendLine(request, std::span(kFourPixels).first(9), line);
  CHECK(line == FromHex("1F 5B 97 00 80 F0"));
}

TEST_CASE("simulator: a mirrored line runs from right to left, each pixel as it is") {
  ScanRequest request = Request(ColorMode::kRedGreenBlue, 8);
  request.mirrored = true;
  CheckLine(request, "11 22 33 00 80 FF FE BA 76 12 56 9A");
}

TEST_CASE("simulator: a gamma table of k at place k changes nothing") {
  const Bytes identity = Identity();
  simulator::GammaTables gamma;
  REQUIRE(gamma.Set('M', identity));
  for (std::uint32_t sample = 0; sample <= 0xFFFF; ++sample) {
    REQUIRE(gamma.OnAll(static_cast<std::uint16_t>(sample)) == sample);
  }
}

TEST_CASE("simulator: each colour has its table, and grey has one behind the three") {
  ScanRequest request = Request(ColorMode::kRedGreenBlue, 8);
  REQUIRE(request.gamma.Set('G', Inverting()));
  CheckLine(request, "12 A9 9A FE 45 76 00 7F FF 11 DD 33");
  request = Request(ColorMode::kRed, 8);
  REQUIRE(request.gamma.Set('M', Inverting()));
  CheckLine(request, "ED 01 FF EE");
  REQUIRE(request.gamma.Set('R', Inverting()));
  CheckLine(request, "12 FE 00 11");
}

TEST_CASE("simulator: gamma tables belong to the parameter block that follows them") {
  simulator::ExtendedScanner scanner(SmallFlatbed());
  Converse(scanner, "+ z 4D" + ToHex(Inverting()));
  const Bytes inverted = ScanWith(scanner, ParameterBlock(), 16);
  const Bytes plain = ScanWith(scanner, ParameterBlock(), 16);
  for (std::size_t i = 0; i < plain.size(); ++i) CHECK(inverted[i] == 255 - plain[i]);
}
