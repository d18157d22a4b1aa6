#pragma once

#include "wire/named_field.h"

// Reply to ESC "?", header first.
namespace pmddb832::product_reply {

inline constexpr std::size_t kNameOffset = 12;
inline constexpr std::size_t kNameBytes = 16;

inline constexpr std::array kFields{NamedText("product name", kNameOffset, kNameBytes)};

}  // namespace pmddb832::product_reply
