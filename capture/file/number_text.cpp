#include "capture/file/number_text.h"

#include <charconv>

namespace capture {

std::optional<std::uint64_t> ParseNumber(std::string_view text, unsigned bits) {
  const bool isHex = text.starts_with("0x") || text.starts_with("0X");
  const std::optional<std::uint64_t> value =
      isHex ? ParseDigits(text.substr(2), 16) : ParseDigits(text, 10);
  if (value.has_value() && bits < 64 && (*value >> bits) != 0) return std::nullopt;
  return value;
}

std::optional<std::uint64_t> ParseDigits(std::string_view digits, int base) {
  std::uint64_t value = 0;
  const char* const end = digits.data() + digits.size();
  const auto [stop, error] = std::from_chars(digits.data(), end, value, base);
  if (error != std::errc() || stop != end) return std::nullopt;
  return value;
}

std::string Counted(std::uint64_t count, const std::string& noun) {
  return std::to_string(count) + " " + noun + (count == 1 ? "" : "s");
}

}  // namespace capture
