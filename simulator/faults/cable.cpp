#include "simulator/faults/cable.h"

#include <algorithm>

namespace simulator {

std::uint32_t Cable::Begin(std::uint32_t count) {
  const std::uint32_t number = transfers++;
  if (defects.unpluggedAtTransfer && number >= *defects.unpluggedAtTransfer) return 0;
  if (!defects.unpluggedAtByte) return count;
  const std::uint64_t left =
      *defects.unpluggedAtByte - std::min<std::uint64_t>(bytes, *defects.unpluggedAtByte);
  return static_cast<std::uint32_t>(std::min<std::uint64_t>(count, left));
}

std::uint32_t Cable::Shorten(std::uint32_t count) {
  const std::uint32_t number = transfers - 1;
  if (shortened || !defects.shortReadAtTransfer || number < *defects.shortReadAtTransfer) {
    return count;
  }
  shortened = true;
  return count / 2;
}

}  // namespace simulator
