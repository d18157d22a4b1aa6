#pragma once

#include <cstdint>

// What a transfer at the device interface returns when it fails.
namespace simulator::device_results {

inline constexpr auto kUnplugged = static_cast<std::int32_t>(0x8007048F);  // not connected
inline constexpr auto kTimeout = static_cast<std::int32_t>(0x80070079);

}  // namespace simulator::device_results
