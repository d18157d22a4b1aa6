#include <doctest/doctest.h>

#include "simulator/device/line_format.h"
#include "tests/simulator/simulator_conversation.h"

// The forms of a line that only the standard scanner has: planes, and packed grey.

using namespace simulator_test;
using simulator::ColorMode;
using simulator::ScanRequest;

namespace {

// Five pixels: red, green and blue of each.
const std::vector<std::uint16_t> kFivePixels{0x1234, 0x5678, 0x9ABC, 0xFEDC, 0xBA98,
                                             0x7654, 0x0000, 0x8000, 0xFFFF, 0x1111,
                                             0x2222, 0x3333, 0xE000, 0x1FFF, 0xC000};

void CheckLine(ColorMode mode, std::uint8_t bits, std::uint32_t width, std::string_view hex) {
  ScanRequest request;
  request.width = width;
  request.height = 1;
  request.colorMode = mode;
  request.bits = bits;
  request.packsNibbles = true;
  Bytes line;
  simulator::AppendLine(request, std::span(kFivePixels).first(width * 3), line);
  CHECK(ToHex(line) == ToHex(FromHex(hex)));
  CHECK(line.size() == simulator::LineBytes(request));
}

}  // namespace

TEST_CASE(
    "simulator: planes of 3 bits are a line of red, of green and of blue, in halves of a byte") {
  CheckLine(ColorMode::kPlanes, 3, 4, "0E 00  4A 82  86 E2");
  CheckLine(ColorMode::kPlanes, 3, 5, "0E 00 E0  4A 82 00  86 E2 C0");
}

TEST_CASE("simulator: planes of 1 bit are 8 pixels a byte each") {
  CheckLine(ColorMode::kPlanes, 1, 5, "48 60 A8");
}

TEST_CASE("simulator: grey of 4 bits is two pixels a byte, the left one high") {
  CheckLine(ColorMode::kGreen, 4, 4, "5B 82");
  CheckLine(ColorMode::kRed, 4, 5, "1F 01 E0");
}

TEST_CASE("simulator: colour of 4 bits is not packed further") {
  CheckLine(ColorMode::kRedGreenBlue, 4, 4, "1F 5B 97 01 82 F3 00 00");
}
