#include <doctest/doctest.h>

#include <algorithm>
#include <array>

#include "imaging/pixel_conversion.h"
#include "tests/imaging/pixel_oracle.h"

namespace pmddb832::tests {
namespace {

std::string Grey(const Bytes& line, std::int32_t pixels, std::size_t rowBytes, std::int16_t pad,
                 bool trim) {
  return Hex(Converted(line, pixels, rowBytes, [&](const ScanLine& scanLine, HostRow row) {
    Scanutil::Pix256MonoFinal(scanLine, row, pad, trim);
  }));
}

std::string DeepGrey(const Bytes& line, std::int32_t pixels, std::size_t rowBytes, std::int16_t pad,
                     bool trim) {
  return Hex(Converted(line, pixels, rowBytes, [&](const ScanLine& scanLine, HostRow row) {
    Scanutil::Pix4096Mono(scanLine, row, pad, trim);
  }));
}

std::string Preview(const Bytes& line, std::int32_t pixels, std::size_t rowBytes,
                    std::int16_t pad) {
  return Hex(Converted(line, pixels, rowBytes, [&](const ScanLine& scanLine, HostRow row) {
    Scanutil::Pix256MonoPreview(scanLine, row, pad);
  }));
}

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

}  // namespace

TEST_CASE_FIXTURE(ModuleFixture, "grey: bytes are copied, the pad repeats the last of them") {
  CHECK(Grey({1, 2, 3, 4}, 4, 5, 0, false) == "01 02 03 04 C3");
  CHECK(Grey({1, 2, 3, 4}, 4, 5, 2, false) == "01 02 02 02 C3");
}

TEST_CASE_FIXTURE(ModuleFixture, "grey: a white pad is 0xFF") {
  AskForWhiteFill(settings);
  CHECK(Grey({1, 2, 3, 4}, 4, 4, 2, false) == "01 02 FF FF");
}

TEST_CASE_FIXTURE(ModuleFixture, "grey: a negative pad fills as many pixels, trim or not") {
  CHECK(Grey({1, 2, 3, 4}, 4, 4, -1, false) == "01 02 03 03");
  CHECK(Grey({1, 2, 3, 4}, 4, 4, -1, true) == "01 02 03 03");
}

TEST_CASE_FIXTURE(ModuleFixture, "grey: with trim a pad of 4 skips four bytes and fills nothing") {
  AskForWhiteFill(settings);
  CHECK(Grey({1, 2, 3, 4, 5, 6, 7}, 3, 4, 4, true) == "05 06 07 C3");
  CHECK(Grey({1, 2, 3}, 3, 3, 0, true) == "01 02 03");
}

TEST_CASE_FIXTURE(ModuleFixture, "grey: where the trimmed line ends the row is white") {
  CHECK(Grey({1, 2, 3, 4, 5}, 5, 6, 2, true) == "03 04 05 FF FF FF");
  CHECK(Grey({1, 2}, 2, 3, 7, true) == "FF FF FF");
}

TEST_CASE_FIXTURE(ModuleFixture, "grey: a pad not below the pixel count converts nothing") {
  CHECK(Grey({1, 2, 3}, 3, 4, 3, false) == "00 00 00 C3");
  CHECK(Grey({1, 2, 3}, 3, 5, 4, false) == "00 00 00 00 C3");
  CHECK(Grey({1, 2, 3}, 3, 3, -4, false) == "00 00 00");
  AskForWhiteFill(settings);
  CHECK(Grey({1, 2, 3}, 3, 4, 3, false) == "FF FF FF C3");
}

TEST_CASE_FIXTURE(ModuleFixture, "grey: line and row that are too short end what is converted") {
  CHECK(Grey({1, 2}, 4, 5, 1, false) == "01 02 FF FF FF");
  CHECK(Grey({1, 2, 3, 4}, 4, 3, 0, false) == "01 02 03");
  CHECK(Grey({1, 2, 3, 4}, 4, 3, 2, false) == "01 02 02");
}

TEST_CASE_FIXTURE(ModuleFixture, "preview: every eleventh value repeats, and 255 becomes 234") {
  CHECK(Preview({0, 1, 9, 10, 11, 12, 21, 22}, 8, 8, 0) == "00 01 09 0A 0A 0B 14 14");
  CHECK(Preview({252, 253, 254, 255}, 4, 4, 0) == "E6 E6 E7 EA");
}

TEST_CASE_FIXTURE(ModuleFixture, "preview: the whole table") {
  Bytes line(256);
  for (std::size_t k = 0; k < 256; ++k) line[k] = static_cast<std::uint8_t>(k);
  const Bytes row = Converted(line, 256, 256, [](const ScanLine& scanLine, HostRow to) {
    Scanutil::Pix256MonoPreview(scanLine, to, 0);
  });
  int next = 0;
  for (int k = 0; k < 255; ++k) {
    if (k % 11 == 0 && k > 0) --next;
    CHECK(row[static_cast<std::size_t>(k)] == next++);
  }
  CHECK(row[254] == 231);
  CHECK(row[255] == 234);
}

TEST_CASE_FIXTURE(ModuleFixture, "preview: the fill is the last value as it was mapped, or white") {
  CHECK(Preview({10, 255, 3}, 3, 3, 1) == "0A EA EA");
  CHECK(Preview({10, 255, 3}, 3, 4, -1) == "0A EA 03 FF");
  AskForWhiteFill(settings);
  CHECK(Preview({10, 255, 3}, 3, 3, 1) == "0A EA FF");
}

TEST_CASE_FIXTURE(ModuleFixture, "deep grey: samples keep their byte order, the pad the last one") {
  CHECK(DeepGrey({0x12, 0x34, 0x56, 0x78}, 2, 5, 0, false) == "12 34 56 78 C3");
  CHECK(DeepGrey({0x12, 0x34, 0x56, 0x78}, 2, 4, 1, false) == "12 34 12 34");
  CHECK(DeepGrey({0x12, 0x34, 0x56, 0x78}, 2, 4, -1, true) == "12 34 12 34");
  AskForWhiteFill(settings);
  CHECK(DeepGrey({0x12, 0x34, 0x56, 0x78}, 2, 4, 1, false) == "12 34 FF FF");
}

TEST_CASE_FIXTURE(ModuleFixture, "deep grey: trim skips bytes, not samples") {
  CHECK(DeepGrey({1, 2, 3, 4, 5, 6, 7}, 3, 6, 1, true) == "02 03 04 05 06 07");
  CHECK(DeepGrey({1, 2, 3, 4, 5, 6}, 3, 6, 1, true) == "02 03 04 05 FF FF");
  CHECK(DeepGrey({1, 2, 3, 4, 5, 6, 7, 8}, 3, 6, 2, true) == "03 04 05 06 07 08");
}

TEST_CASE_FIXTURE(ModuleFixture, "deep grey: half a sample is neither read nor written") {
  CHECK(DeepGrey({1, 2, 3}, 2, 4, 0, false) == "01 02 FF FF");
  CHECK(DeepGrey({1, 2, 3, 4}, 2, 3, 0, false) == "01 02 FF");
}

TEST_CASE_FIXTURE(ModuleFixture, "grey: every length, pad and size as the rules say") {
  for (const bool trim : {false, true}) {
    Routine routine = CopyingRoutine(trim ? "Pix256MonoFinal trimmed" : "Pix256MonoFinal", 1, trim);
    routine.convert = [=](const ScanLine& line, HostRow row, std::int16_t pad) {
      Scanutil::Pix256MonoFinal(line, row, pad, trim);
    };
    settings.whitePadding = 0;
    CHECK(DifferenceFromRules(settings, routine) == "");
  }
}

TEST_CASE_FIXTURE(ModuleFixture, "deep grey: every length, pad and size as the rules say") {
  for (const bool trim : {false, true}) {
    Routine routine = CopyingRoutine(trim ? "Pix4096Mono trimmed" : "Pix4096Mono", 2, trim);
    routine.convert = [=](const ScanLine& line, HostRow row, std::int16_t pad) {
      Scanutil::Pix4096Mono(line, row, pad, trim);
    };
    settings.whitePadding = 0;
    CHECK(DifferenceFromRules(settings, routine) == "");
  }
}

TEST_CASE_FIXTURE(ModuleFixture, "preview: every length, pad and size as the rules say") {
  const Routine routine{
      .name = "Pix256MonoPreview",
      .convert = [](const ScanLine& line, HostRow row,
                    std::int16_t pad) { Scanutil::Pix256MonoPreview(line, row, pad); },
      .pixelBytes = 1,
      .lineBytes = [](std::size_t pixels) { return pixels; },
      .pixel =
          [](const std::uint8_t* line, std::size_t i, std::uint8_t* to) {
            *to = static_cast<std::uint8_t>(line[i] == 255 ? 234 : line[i] - line[i] / 11);
          }};
  CHECK(DifferenceFromRules(settings, routine) == "");
}

}  // namespace pmddb832::tests
