#include "simulator/faults/cable.h"

#include <algorithm>

namespace simulator {

std::uint32_t Cable::Begin(std::uint32_t count) {
  const std::uint32_t number = transfers_++;
  if (defects_.unpluggedAtTransfer && number >= *defects_.unpluggedAtTransfer) return 0;
  if (!defects_.unpluggedAtByte) return count;
  const std::uint64_t left =
      *defects_.unpluggedAtByte - std::min<std::uint64_t>(bytes_, *defects_.unpluggedAtByte);
  return static_cast<std::uint32_t>(std::min<std::uint64_t>(count, left));
}

std::uint32_t Cable::Shorten(std::uint32_t count) {
  const std::uint32_t number = transfers_ - 1;
  if (shortened_ || !defects_.shortReadAtTransfer || number < *defects_.shortReadAtTransfer) {
    return count;
  }
  shortened_ = true;
  return count / 2;
}

}  // namespace simulator
