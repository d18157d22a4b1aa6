#pragma once

#include <array>
#include <concepts>
#include <cstdint>
#include <optional>
#include <span>
#include <string_view>
#include <type_traits>
#include <vector>

#include "capture/calls/export_table.h"
#include "capture/file/capture.h"
#include "transport/acquisition_records.h"

// How the parameters of the exports become the numbers of a capture, and numbers parameters.
namespace pmscan {

// What a call fills, in the order of the table of exports.
inline std::array<std::uint32_t*, 4> Members(pmddb832::AcquisitionSetup& setup) {
  return {&setup.status, &setup.lineBytes, &setup.widthPixels, &setup.heightLines};
}
inline std::array<std::uint32_t*, 4> Members(pmddb832::AcquisitionBand& band) {
  return {&band.status, &band.done, &band.lines, &band.bytes};
}
inline std::array<std::uint32_t*, 1> Members(std::uint32_t& number) {
  return {&number};
}

template <class Parameter>
concept Filled = std::is_pointer_v<Parameter> &&
    requires(std::remove_pointer_t<Parameter>& record) {
  Members(record);
};

// Puts names to the numbers of a call, one after the other.
class NamedNumbers {
 public:
  explicit NamedNumbers(std::span<const capture::ValueShape> names) : names_(names) {}

  // Of what the host hands over to be filled only numbers that are not 0: others are understood.
  template <class Parameter>
  void AddArgument(Parameter parameter) {
    if constexpr (std::integral<Parameter>) {
      Add(parameter, true);
    } else if constexpr (std::same_as<Parameter, pmddb832::ProgressCallback>) {
      Add(parameter != nullptr ? 1 : 0, true);
    } else if constexpr (Filled<Parameter>) {
      for (const std::uint32_t* member : Members(*parameter)) Add(*member, *member != 0);
    }
  }
  template <class Parameter>
  void AddFilled(Parameter parameter) {
    if constexpr (Filled<Parameter>) {
      for (const std::uint32_t* member : Members(*parameter)) Add(*member, true);
    }
  }
  void Add(std::uint32_t number, bool isKept) {
    const std::string_view name = names_[next_++].name;
    if (isKept) values_.push_back({std::string(name), number});
  }

  const std::vector<capture::Value>& Values() const { return values_; }

 private:
  std::span<const capture::ValueShape> names_;
  std::size_t next_ = 0;
  std::vector<capture::Value> values_;
};

// The value of that name, 0 when there is none.
std::uint32_t ValueOf(const std::vector<capture::Value>& values, std::string_view name);

// CRC-32 of the lines that the call delivered; none when it failed, or fetches none.
std::optional<std::uint32_t> LinesChecksum(std::uint8_t* buffer, std::uint32_t bufferBytes,
                                           pmddb832::AcquisitionBand* band);
template <class... Parameter>
std::optional<std::uint32_t> LinesChecksum(Parameter...) {
  return std::nullopt;
}

}  // namespace pmscan
