#include <doctest/doctest.h>

#include "imaging/pixel_conversion.h"
#include "tests/imaging/pixel_oracle.h"

namespace pmddb832::tests {
namespace {

struct Planes {
  Bytes first;
  Bytes second;
  Bytes third;
};

std::string Palette(const Planes& planes, std::int32_t pixels, std::size_t rowBytes,
                    std::int16_t pad, bool firstLeads, bool whiteFill = false) {
  Bytes row(rowBytes, kUntouched);
  Scanutil::Pix256Color(ScanLine{pixels, planes.first, planes.second, planes.third}, HostRow(row),
                        firstLeads, pad, whiteFill);
  return Hex(row);
}

// Level of the top three bits of a 4-bit sample in the colour cube.
int Level(int sample) {
  constexpr int kLevels[] = {0, 1, 1, 2, 3, 4, 4, 5};
  return kLevels[sample / 2];
}

}  // namespace

TEST_CASE("palette: black is 0, white is 215") {
  CHECK(Palette({{0xFF}, {0xFF}, {0xFF}}, 2, 2, 0, true) == "D7 D7");
  CHECK(Palette({{0x00}, {0x00}, {0x00}}, 2, 2, 0, true) == "00 00");
}

TEST_CASE("palette: half of the leading plane is 108") {
  CHECK(Palette({{0x80}, {0x00}, {0x00}}, 2, 2, 0, true) == "6C 00");
  CHECK(Palette({{0x00}, {0x00}, {0x80}}, 2, 2, 0, false) == "6C 00");
  CHECK(Palette({{0x08}, {0x00}, {0x00}}, 2, 2, 0, true) == "00 6C");
}

TEST_CASE("palette: the planes weigh 36, 6 and 1, or the other way round") {
  CHECK(Palette({{0xFF}, {0x00}, {0x00}}, 2, 2, 0, true) == "B4 B4");
  CHECK(Palette({{0x00}, {0xFF}, {0x00}}, 2, 2, 0, true) == "1E 1E");
  CHECK(Palette({{0x00}, {0x00}, {0xFF}}, 2, 2, 0, true) == "05 05");
  CHECK(Palette({{0xFF}, {0x00}, {0x00}}, 2, 2, 0, false) == "05 05");
  CHECK(Palette({{0x00}, {0xFF}, {0x00}}, 2, 2, 0, false) == "1E 1E");
  CHECK(Palette({{0x00}, {0x00}, {0xFF}}, 2, 2, 0, false) == "B4 B4");
}

TEST_CASE("palette: sixteen samples have the eight levels of the cube") {
  const Bytes ramp{0x01, 0x23, 0x45, 0x67, 0x89, 0xAB, 0xCD, 0xEF};
  const Bytes zeros = Fill(8, 0);
  CHECK(Palette({zeros, zeros, ramp}, 16, 16, 0, true) ==
        "00 00 01 01 01 01 02 02 03 03 04 04 04 04 05 05");
  CHECK(Palette({zeros, ramp, zeros}, 16, 16, 0, true) ==
        "00 00 06 06 06 06 0C 0C 12 12 18 18 18 18 1E 1E");
  CHECK(Palette({ramp, zeros, zeros}, 16, 16, 0, true) ==
        "00 00 24 24 24 24 48 48 6C 6C 90 90 90 90 B4 B4");
}

TEST_CASE("palette: the lowest bit of a sample does not count") {
  CHECK(Palette({{0x11}, {0x11}, {0x11}}, 2, 2, 0, true) == "00 00");
  CHECK(Palette({{0xEE}, {0xEE}, {0xEE}}, 2, 2, 0, true) == "D7 D7");
}

TEST_CASE("palette: an odd count stops after a high nibble") {
  CHECK(Palette({{0xFF, 0xF0}, {0, 0}, {0, 0}}, 3, 4, 0, true) == "B4 B4 B4 C3");
  CHECK(Palette({{0xF0}, {0x00}, {0x00}}, 2, 3, 1, true) == "B4 B4 C3");
}

TEST_CASE("palette: fill and cuts") {
  CHECK(Palette({{0xF0}, {0x00}, {0x00}}, 2, 3, 2, true) == "00 00 C3");
  CHECK(Palette({{0xFF}, {0x00}, {0x00}}, 4, 5, 0, true) == "B4 B4 FF FF FF");
  CHECK(Palette({{0xFF}, {0x00}, {0x00}}, 2, 1, 0, true) == "B4");
  CHECK(Palette({{0xF0}, {0x00}, {0x00}}, 2, 2, 1, true, kWhiteFill) == "B4 FF");
}

TEST_CASE("palette: the shortest plane ends what is converted") {
  const Bytes one{0xFF};
  const Bytes two{0xFF, 0xFF};
  CHECK(Palette({one, two, two}, 4, 4, 0, true) == "D7 D7 FF FF");
  CHECK(Palette({two, one, two}, 4, 4, 0, true) == "D7 D7 FF FF");
  CHECK(Palette({two, two, one}, 4, 4, 0, false) == "D7 D7 FF FF");
  CHECK(Palette({two, two, {}}, 4, 4, 0, true) == "FF FF FF FF");
}

TEST_CASE("palette: every length, pad and size as the rules say") {
  for (const bool firstLeads : {false, true}) {
    const Routine routine{
        .name = firstLeads ? "Pix256Color, first plane leads" : "Pix256Color",
        .convert = [=](const ScanLine& line, HostRow row, std::int16_t pad,
                       bool white) { Scanutil::Pix256Color(line, row, firstLeads, pad, white); },
        .pixelBytes = 1,
        .lineBytes = [](std::size_t pixels) { return (pixels + 1) / 2; },
        .pixel =
            [=](const std::uint8_t* line, std::size_t i, std::uint8_t* to) {
              const auto level = [&](int plane) {
                const std::uint8_t byte = PlaneByte(plane, line[i / 2]);
                return Level(i % 2 == 0 ? byte / 16 : byte % 16);
              };
              const int first = level(firstLeads ? 0 : 2);
              const int last = level(firstLeads ? 2 : 0);
              *to = static_cast<std::uint8_t>(36 * first + 6 * level(1) + last);
            }};
    CHECK(DifferenceFromRules(routine) == "");
  }
}

}  // namespace pmddb832::tests
