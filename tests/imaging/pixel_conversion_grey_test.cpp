#include <doctest/doctest.h>

#include <algorithm>
#include <array>

#include "imaging/pixel_conversion.h"
#include "tests/imaging/pixel_oracle.h"

namespace pmddb832::tests {
namespace {

// A grey routine that copies pixels of `bytes` bytes.
Routine CopyingRoutine(std::string_view name, std::size_t bytes, bool trim) {
  return {.name = name,
          .convert = {},
          .frame = [=](std::int32_t pixels,
                       std::int16_t pad) { return TrimmableFrame(pixels, pad, trim); },
          .pixelBytes = bytes,
          .lineBytes = [=](std::size_t pixels) { return bytes * pixels; },
          .pixel = [=](const std::uint8_t* line, std::size_t i,
                       std::uint8_t* to) { std::copy_n(line + bytes * i, bytes, to); }};
}

Routine Grey(bool trim) {
  Routine routine = CopyingRoutine(trim ? "Pix256MonoFinal trimmed" : "Pix256MonoFinal", 1, trim);
  routine.convert = [=](const ScanLine& line, HostRow row, std::int16_t pad, bool white) {
    Scanutil::Pix256MonoFinal(line, row, pad, trim, white);
  };
  return routine;
}

Routine DeepGrey(bool trim) {
  Routine routine = CopyingRoutine(trim ? "Pix4096Mono trimmed" : "Pix4096Mono", 2, trim);
  routine.convert = [=](const ScanLine& line, HostRow row, std::int16_t pad, bool white) {
    Scanutil::Pix4096Mono(line, row, pad, trim, white);
  };
  return routine;
}

const Routine kPreview{
    .name = "Pix256MonoPreview",
    .convert = Scanutil::Pix256MonoPreview,
    .pixelBytes = 1,
    .lineBytes = [](std::size_t pixels) { return pixels; },
    .pixel =
        [](const std::uint8_t* line, std::size_t i, std::uint8_t* to) {
          *to = static_cast<std::uint8_t>(line[i] == 255 ? 234 : line[i] - line[i] / 11);
        }};

}  // namespace

TEST_CASE("grey: bytes are copied, the pad repeats the last of them") {
  CHECK(Grey(false).Row({1, 2, 3, 4}, 4, 5, 0) == "01 02 03 04 C3");
  CHECK(Grey(false).Row({1, 2, 3, 4}, 4, 5, 2) == "01 02 02 02 C3");
}

TEST_CASE("grey: a white pad is 0xFF") {
  CHECK(Grey(false).Row({1, 2, 3, 4}, 4, 4, 2, kWhiteFill) == "01 02 FF FF");
}

TEST_CASE("grey: a negative pad fills as many pixels, trim or not") {
  CHECK(Grey(false).Row({1, 2, 3, 4}, 4, 4, -1) == "01 02 03 03");
  CHECK(Grey(true).Row({1, 2, 3, 4}, 4, 4, -1) == "01 02 03 03");
}

TEST_CASE("grey: with trim a pad of 4 skips four bytes and fills nothing") {
  CHECK(Grey(true).Row({1, 2, 3, 4, 5, 6, 7}, 3, 4, 4, kWhiteFill) == "05 06 07 C3");
  CHECK(Grey(true).Row({1, 2, 3}, 3, 3, 0, kWhiteFill) == "01 02 03");
}

TEST_CASE("grey: where the trimmed line ends the row is white") {
  CHECK(Grey(true).Row({1, 2, 3, 4, 5}, 5, 6, 2) == "03 04 05 FF FF FF");
  CHECK(Grey(true).Row({1, 2}, 2, 3, 7) == "FF FF FF");
}

TEST_CASE("grey: a pad not below the pixel count converts nothing") {
  CHECK(Grey(false).Row({1, 2, 3}, 3, 4, 3) == "00 00 00 C3");
  CHECK(Grey(false).Row({1, 2, 3}, 3, 5, 4) == "00 00 00 00 C3");
  CHECK(Grey(false).Row({1, 2, 3}, 3, 3, -4) == "00 00 00");
  CHECK(Grey(false).Row({1, 2, 3}, 3, 4, 3, kWhiteFill) == "FF FF FF C3");
}

TEST_CASE("grey: line and row that are too short end what is converted") {
  CHECK(Grey(false).Row({1, 2}, 4, 5, 1) == "01 02 FF FF FF");
  CHECK(Grey(false).Row({1, 2, 3, 4}, 4, 3, 0) == "01 02 03");
  CHECK(Grey(false).Row({1, 2, 3, 4}, 4, 3, 2) == "01 02 02");
}

TEST_CASE("preview: every eleventh value repeats, and 255 becomes 234") {
  CHECK(kPreview.Row({0, 1, 9, 10, 11, 12, 21, 22}, 8, 8, 0) == "00 01 09 0A 0A 0B 14 14");
  CHECK(kPreview.Row({252, 253, 254, 255}, 4, 4, 0) == "E6 E6 E7 EA");
}

TEST_CASE("preview: the whole table") {
  Bytes line(256);
  for (std::size_t k = 0; k < 256; ++k) line[k] = static_cast<std::uint8_t>(k);
  const Bytes row = kPreview.Converted(line, 256, 256, 0);
  int next = 0;
  for (int k = 0; k < 255; ++k) {
    if (k % 11 == 0 && k > 0) --next;
    CHECK(row[static_cast<std::size_t>(k)] == next++);
  }
  CHECK(row[254] == 231);
  CHECK(row[255] == 234);
}

TEST_CASE("preview: the fill is the last value as it was mapped, or white") {
  CHECK(kPreview.Row({10, 255, 3}, 3, 3, 1) == "0A EA EA");
  CHECK(kPreview.Row({10, 255, 3}, 3, 4, -1) == "0A EA 03 FF");
  CHECK(kPreview.Row({10, 255, 3}, 3, 3, 1, kWhiteFill) == "0A EA FF");
}

TEST_CASE("deep grey: samples keep their byte order, the pad the last one") {
  CHECK(DeepGrey(false).Row({0x12, 0x34, 0x56, 0x78}, 2, 5, 0) == "12 34 56 78 C3");
  CHECK(DeepGrey(false).Row({0x12, 0x34, 0x56, 0x78}, 2, 4, 1) == "12 34 12 34");
  CHECK(DeepGrey(true).Row({0x12, 0x34, 0x56, 0x78}, 2, 4, -1) == "12 34 12 34");
  CHECK(DeepGrey(false).Row({0x12, 0x34, 0x56, 0x78}, 2, 4, 1, kWhiteFill) == "12 34 FF FF");
}

TEST_CASE("deep grey: trim skips bytes, not samples") {
  CHECK(DeepGrey(true).Row({1, 2, 3, 4, 5, 6, 7}, 3, 6, 1) == "02 03 04 05 06 07");
  CHECK(DeepGrey(true).Row({1, 2, 3, 4, 5, 6}, 3, 6, 1) == "02 03 04 05 FF FF");
  CHECK(DeepGrey(true).Row({1, 2, 3, 4, 5, 6, 7, 8}, 3, 6, 2) == "03 04 05 06 07 08");
}

TEST_CASE("deep grey: half a sample is neither read nor written") {
  CHECK(DeepGrey(false).Row({1, 2, 3}, 2, 4, 0) == "01 02 FF FF");
  CHECK(DeepGrey(false).Row({1, 2, 3, 4}, 2, 3, 0) == "01 02 FF");
}

TEST_CASE("grey and preview: every length, pad and size as the rules say") {
  for (const Routine& routine :
       {Grey(false), Grey(true), DeepGrey(false), DeepGrey(true), kPreview}) {
    CHECK(DifferenceFromRules(routine) == "");
  }
}

}  // namespace pmddb832::tests
