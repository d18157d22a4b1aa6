#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace capture {

// Reads a whole number of at most `bits` bits: decimal, or hexadecimal behind 0x. Nothing for
// anything else.
std::optional<std::uint64_t> ParseNumber(std::string_view text, unsigned bits);

// Reads digits of the base only.
std::optional<std::uint64_t> ParseDigits(std::string_view digits, int base);

// "1 byte", "12 bytes".
std::string Counted(std::uint64_t count, const std::string& noun);

}  // namespace capture
