#pragma once

#include <cstdint>

#include "simulator/faults/defects.h"

namespace simulator {

// The cable between driver and scanner: counts what passes, and may be pulled out.
class Cable {
 public:
  explicit Cable(const Defects& defectsOfTheScanner) : defects_(defectsOfTheScanner) {}

  // Begins a transfer and returns how many of `count` bytes can pass before the cable is out.
  std::uint32_t Begin(std::uint32_t count);

  // How many of `count` bytes the read that has begun delivers: half of them, once, with the
  // defect of that name, else all.
  std::uint32_t Shorten(std::uint32_t count);

  void Passed(std::uint32_t count) { bytes_ += count; }

 private:
  const Defects defects_;
  std::uint32_t transfers_ = 0;
  std::uint64_t bytes_ = 0;
  bool shortened_ = false;
};

}  // namespace simulator
