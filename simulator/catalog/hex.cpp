#include "simulator/catalog/hex.h"

#include <algorithm>

namespace simulator {

std::string Hex(std::span<const std::uint8_t> bytes) {
  constexpr std::size_t kShown = 8;
  constexpr char kDigits[] = "0123456789ABCDEF";
  std::string text;
  for (const std::uint8_t byte : bytes.first(std::min(bytes.size(), kShown))) {
    if (!text.empty()) text += ' ';
    text += kDigits[byte >> 4];
    text += kDigits[byte & 0x0F];
  }
  if (bytes.size() > kShown) text += " ... (" + std::to_string(bytes.size()) + " bytes)";
  return text;
}

}  // namespace simulator
