#include "pmscan/pictures/sample_order.h"

#include <cstddef>

namespace pmscan {

void SwapSampleBytes(std::span<const std::uint8_t> samples, std::span<std::uint8_t> swapped) {
  for (std::size_t i = 0; i + 1 < samples.size(); i += 2) {
    swapped[i] = samples[i + 1];
    swapped[i + 1] = samples[i];
  }
}

}  // namespace pmscan
