#pragma once

#include <cstdint>
#include <span>

namespace pmscan {

// Copies 16-bit samples with the two bytes of each swapped. Both spans have the same even size.
void SwapSampleBytes(std::span<const std::uint8_t> samples, std::span<std::uint8_t> swapped);

}  // namespace pmscan
