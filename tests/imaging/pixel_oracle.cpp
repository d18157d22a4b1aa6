#include "tests/imaging/pixel_oracle.h"

#include <algorithm>
#include <initializer_list>

namespace pmddb832::tests {
namespace {

constexpr std::uint8_t kWhite = 0xFF;
constexpr std::int32_t kLongestLine = 70;
constexpr std::size_t kLongestRow = 1000;

struct Case {
  std::int32_t pixelCount;
  std::int16_t pad;
  bool white;
  std::size_t lineBytes;
  std::size_t rowBytes;
};

std::string Describe(const Case& sample) {
  return std::to_string(sample.pixelCount) + " pixels in " + std::to_string(sample.lineBytes) +
         " bytes, pad " + std::to_string(sample.pad) + ", row of " +
         std::to_string(sample.rowBytes) + (sample.white ? " bytes, white" : " bytes, repeated");
}

// Bytes without a pattern, other ones for each length.
Bytes Noise(std::size_t count) {
  Bytes bytes(count);
  std::uint32_t state = 12345 + static_cast<std::uint32_t>(count);
  for (std::uint8_t& byte : bytes) {
    state = state * 1664525 + 1013904223;
    byte = static_cast<std::uint8_t>(state >> 24);
  }
  return bytes;
}

// How many pixels a line holds: as many as fit its bytes.
std::int64_t PixelsIn(const Routine& routine, std::int64_t bytes) {
  std::size_t pixels = 0;
  while (static_cast<std::int64_t>(routine.lineBytes(pixels + 1)) <= bytes) ++pixels;
  return static_cast<std::int64_t>(pixels);
}

// A row that is written from its start, pixel by pixel, until there is no room.
class NaiveRow {
 public:
  NaiveRow(std::size_t rowBytes, std::size_t pixelBytes)
      : row_(rowBytes, kUntouched), pixelBytes_(pixelBytes) {}

  // Where the next pixel goes; null, and the rest is white, when it does not fit.
  std::uint8_t* Next() {
    if (row_.size() - used_ < pixelBytes_) {
      WhiteRest();
      return nullptr;
    }
    used_ += pixelBytes_;
    return &row_[used_ - pixelBytes_];
  }

  void WhiteRest() {
    std::fill(row_.begin() + static_cast<std::ptrdiff_t>(used_), row_.end(), kWhite);
  }

  const Bytes& Row() const { return row_; }

 private:
  Bytes row_;
  std::size_t pixelBytes_;
  std::size_t used_ = 0;
};

void FillRow(NaiveRow& row, std::int64_t pixels, const Bytes& fill) {
  for (std::int64_t i = 0; i < pixels; ++i) {
    std::uint8_t* const to = row.Next();
    if (to == nullptr) return;
    std::copy(fill.begin(), fill.end(), to);
  }
}

Bytes RowByRules(const Routine& routine, const Case& sample, const Bytes& line) {
  const Frame frame = routine.frame(sample.pixelCount, sample.pad);
  const auto lineBytes = static_cast<std::int64_t>(line.size());
  const std::int64_t held = PixelsIn(routine, lineBytes - frame.skippedBytes);
  const std::uint8_t* const from = line.data() + std::min(frame.skippedBytes, lineBytes);
  NaiveRow row(sample.rowBytes, routine.pixelBytes);
  Bytes fill(routine.pixelBytes, 0);
  for (std::int64_t i = 0; i < frame.converted; ++i) {
    if (i >= held) {
      row.WhiteRest();
      return row.Row();
    }
    std::uint8_t* const to = row.Next();
    if (to == nullptr) return row.Row();
    const auto pixel = static_cast<std::size_t>(i);
    routine.pixel(from, pixel, to);
    (routine.repeated ? routine.repeated : routine.pixel)(from, pixel, fill.data());
  }
  if (sample.white) std::fill(fill.begin(), fill.end(), kWhite);
  FillRow(row, frame.filled, fill);
  return row.Row();
}

std::string Difference(const Routine& routine, const Case& sample) {
  const Bytes line = Noise(sample.lineBytes);
  const Bytes wanted = RowByRules(routine, sample, line);
  const Bytes came =
      routine.Converted(line, sample.pixelCount, sample.rowBytes, sample.pad, sample.white);
  if (came == wanted) return {};
  return std::string(routine.name) + ": " + Describe(sample) + ": expected " + Hex(wanted) +
         ", came " + Hex(came);
}

// Line and row sizes for one length and pad: exact, and then each too short or too long.
std::string DifferenceInSizes(const Routine& routine, Case sample) {
  const Frame frame = routine.frame(sample.pixelCount, sample.pad);
  const auto converted = static_cast<std::size_t>(std::max<std::int64_t>(frame.converted, 0));
  const auto filled = static_cast<std::size_t>(std::max<std::int64_t>(frame.filled, 0));
  const std::size_t line = std::min(
      routine.lineBytes(converted) + static_cast<std::size_t>(frame.skippedBytes), kLongestRow);
  const std::size_t row = std::min((converted + filled) * routine.pixelBytes, kLongestRow);
  const auto less = [](std::size_t size, std::size_t by) { return size < by ? 0 : size - by; };
  struct Sizes {
    std::size_t line;
    std::size_t row;
  };
  for (const Sizes& sizes : std::initializer_list<Sizes>{{line, row},
                                                         {line + 5, row},
                                                         {line, row + 3},
                                                         {less(line, 1), row},
                                                         {line, less(row, 1)},
                                                         {line / 2, row},
                                                         {line, row / 2},
                                                         {0, row},
                                                         {line, 0},
                                                         {less(line, 3), less(row, 4)}}) {
    sample.lineBytes = sizes.line;
    sample.rowBytes = sizes.row;
    std::string difference = Difference(routine, sample);
    if (!difference.empty()) return difference;
  }
  return {};
}

std::string DifferenceInPads(const Routine& routine, bool white) {
  for (std::int32_t count = -1; count <= kLongestLine; ++count) {
    for (const std::int32_t pad :
         {-32768, -9, -1, 0, 1, 2, 7, 8, 9, 17, count - 1, count, count + 1, 32767}) {
      const auto narrow = static_cast<std::int16_t>(pad);
      std::string difference = DifferenceInSizes(routine, {count, narrow, white, 0, 0});
      if (!difference.empty()) return difference;
    }
  }
  return {};
}

}  // namespace

std::uint8_t PlaneByte(int plane, std::uint8_t lineByte) {
  if (plane == 0) return lineByte;
  return static_cast<std::uint8_t>(plane == 1 ? lineByte * 7 + 0x35 : ~lineByte * 29);
}

Bytes Routine::Converted(const Bytes& line, std::int32_t pixelCount, std::size_t rowBytes,
                         std::int16_t pad, bool whiteFill) const {
  Bytes planes[3] = {Bytes(line.size()), Bytes(line.size()), Bytes(line.size())};
  for (int plane = 0; plane < 3; ++plane) {
    std::transform(line.begin(), line.end(), planes[plane].begin(),
                   [plane](std::uint8_t byte) { return PlaneByte(plane, byte); });
  }
  Bytes row(rowBytes, kUntouched);
  convert({pixelCount, planes[0], planes[1], planes[2]}, row, pad, whiteFill);
  return row;
}

Frame PlainFrame(std::int32_t pixelCount, std::int16_t pad) {
  return {std::int64_t{pixelCount} - pad, pad};
}

Frame TrimmableFrame(std::int32_t pixelCount, std::int16_t pad, bool trim) {
  if (pad < 0) return {std::int64_t{pixelCount} + pad, -pad};
  if (pad > 0 && trim) return {pixelCount, 0, pad};
  return PlainFrame(pixelCount, pad);
}

std::string DifferenceFromRules(const Routine& routine) {
  std::string difference = DifferenceInPads(routine, false);
  return difference.empty() ? DifferenceInPads(routine, kWhiteFill) : difference;
}

}  // namespace pmddb832::tests
