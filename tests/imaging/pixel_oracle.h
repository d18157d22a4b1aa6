#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <string>
#include <string_view>

#include "imaging/scan_line.h"
#include "tests/transport/scripted_device.h"

namespace pmddb832::tests {

// Every byte of a row before its conversion.
inline constexpr std::uint8_t kUntouched = 0xC3;

// What the tests hand to a routine whose fill is to be white; the others repeat the last pixel.
inline constexpr bool kWhiteFill = true;

// The bytes of the three planes at one place, made of one byte of a line: its first plane is the
// line itself.
std::uint8_t PlaneByte(int plane, std::uint8_t lineByte);

// What a conversion has to do, pixel by pixel, for a line of `pixelCount` pixels and a pad.
struct Frame {
  std::int64_t converted = 0;
  std::int64_t filled = 0;
  std::int64_t skippedBytes = 0;  // of the line, before its first pixel
};

// The frame that most routines share, and that of those with a trim flag.
Frame PlainFrame(std::int32_t pixelCount, std::int16_t pad);
Frame TrimmableFrame(std::int32_t pixelCount, std::int16_t pad, bool trim);

// One routine with its flags set: what it does, and the rules from which a naive loop builds the
// same row.
struct Routine {
  std::string_view name;
  std::function<void(const ScanLine&, HostRow, std::int16_t pad, bool whiteFill)> convert;
  std::function<Frame(std::int32_t pixelCount, std::int16_t pad)> frame = PlainFrame;
  std::size_t pixelBytes;  // of a pixel in the row
  // Bytes of a line that holds so many pixels.
  std::function<std::size_t(std::size_t pixels)> lineBytes;
  // Writes pixel i of the line to the row. Called for pixels that the line holds only.
  std::function<void(const std::uint8_t* line, std::size_t i, std::uint8_t* to)> pixel;
  // Writes what is repeated behind pixel i; the pixel itself unless it is given.
  std::function<void(const std::uint8_t* line, std::size_t i, std::uint8_t* to)> repeated = nullptr;

  // Converts a line of `pixelCount` pixels into a row of `rowBytes` untouched bytes and returns the
  // row. Planes and row each end where their allocation ends, so that a sanitizer sees the first
  // byte too far.
  Bytes Converted(const Bytes& line, std::int32_t pixelCount, std::size_t rowBytes,
                  std::int16_t pad, bool whiteFill = false) const;
  // The row as hex text.
  std::string Row(const Bytes& line, std::int32_t pixelCount, std::size_t rowBytes,
                  std::int16_t pad, bool whiteFill = false) const {
    return Hex(Converted(line, pixelCount, rowBytes, pad, whiteFill));
  }
};

// Compares a routine with its rules: lines of 0 to 70 pixels, pads around every limit, white and
// repeated fill, and lines and rows that are exact, too short and too long. Returns what differs
// first; empty when nothing does.
std::string DifferenceFromRules(const Routine& routine);

}  // namespace pmddb832::tests
