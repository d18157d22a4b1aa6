#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

namespace pmscan {

// The lowest `bytes` bytes of the value, the lowest first.
inline void AppendLittle(std::vector<std::uint8_t>& target, std::uint32_t value,
                         std::size_t bytes) {
  for (std::size_t i = 0; i < bytes; ++i)
    target.push_back(static_cast<std::uint8_t>(value >> 8 * i));
}

// The same, the highest first.
inline void AppendBig(std::vector<std::uint8_t>& target, std::uint32_t value, std::size_t bytes) {
  for (std::size_t i = bytes; i-- > 0;) target.push_back(static_cast<std::uint8_t>(value >> 8 * i));
}

}  // namespace pmscan
