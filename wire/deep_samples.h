#pragma once

#include <cstdint>
#include <string_view>

// The bits of a sample that scanners send for the deep pixel types, in two bytes each.
namespace pmddb832 {

inline constexpr std::uint8_t kUsualDeepBits = 12;
inline constexpr std::uint8_t kGreatDeepBits = 14;

// Whether the product with that name of 16 characters, in an extended identity, sends the greater
// number.
constexpr bool HasGreatDeepBits(std::string_view productName) {
  return productName == "SCANNER RV-3100 " || productName == "Prospectra3140XL";
}

}  // namespace pmddb832
