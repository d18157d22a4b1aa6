#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <span>

namespace simulator {

// The tables that the driver downloaded: one for each of the three channels, and one for grey.
// A table that did not come leaves the samples as they are.
class GammaTables {
 public:
  using Table = std::array<std::uint8_t, 256>;

  // Keeps the table for the selector 'R', 'G', 'B' or 'M' (grey); false for another selector.
  // `table` has 256 bytes.
  bool Set(std::uint8_t selector, std::span<const std::uint8_t> table);

  // The sample after the table of that channel (0 red, 1 green, 2 blue) or of grey. Between the
  // table's 256 places the value is interpolated, so that a table of k at place k changes nothing.
  std::uint16_t OnChannel(std::size_t channel, std::uint16_t sample) const {
    return Apply(tables_[channel], sample);
  }
  std::uint16_t OnGrey(std::uint16_t sample) const { return Apply(tables_[3], sample); }

 private:
  static std::uint16_t Apply(const std::optional<Table>& table, std::uint16_t sample);

  std::array<std::optional<Table>, 4> tables_;  // red, green, blue, grey
};

}  // namespace simulator
