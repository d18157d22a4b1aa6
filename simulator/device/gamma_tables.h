#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <span>

namespace simulator {

// Tables of tones: one for each of the three channels, and one for all. A table that is missing
// leaves the samples as they are.
class GammaTables {
 public:
  using Table = std::array<std::uint8_t, 256>;

  // The tables of a gamma code, alike for the three channels: the place k holds
  // 255 (k / 255) ^ (1 / gamma), rounded. Code 01 stands for gamma 1.0, 02 for 2.2, 20 for 2.5, 10
  // for 2.8 and 00 for 3.0; nothing for another code.
  static std::optional<GammaTables> BuiltIn(std::uint8_t code);

  // Keeps the table for the selector 'R', 'G', 'B' or 'M' (all); false for another selector.
  // `table` has 256 bytes.
  bool Set(std::uint8_t selector, std::span<const std::uint8_t> table);

  // The sample after the table of that channel (0 red, 1 green, 2 blue) or of all. Between the
  // table's 256 places the value is interpolated, so that a table of k at place k changes nothing.
  std::uint16_t OnChannel(std::size_t channel, std::uint16_t sample) const {
    return Apply(tables_[channel], sample);
  }
  std::uint16_t OnAll(std::uint16_t sample) const { return Apply(tables_[3], sample); }

 private:
  static std::uint16_t Apply(const std::optional<Table>& table, std::uint16_t sample);

  std::array<std::optional<Table>, 4> tables_;  // red, green, blue, all
};

}  // namespace simulator
