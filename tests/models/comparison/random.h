#pragma once

#include <cstdint>
#include <initializer_list>

namespace pmddb832::models {

// Numbers that follow from the seed alone, on every machine.
class Random {
 public:
  explicit Random(std::uint64_t seed) : state_(seed) {}

  std::uint64_t Next() {
    std::uint64_t mixed = state_ += 0x9E3779B97F4A7C15;
    mixed = (mixed ^ mixed >> 30) * 0xBF58476D1CE4E5B9;
    mixed = (mixed ^ mixed >> 27) * 0x94D049BB133111EB;
    return mixed ^ mixed >> 31;
  }
  // 0 to below - 1.
  std::uint32_t Below(std::uint32_t below) { return static_cast<std::uint32_t>(Next() % below); }
  std::uint32_t Between(std::uint32_t least, std::uint32_t most) {
    return least + Below(most - least + 1);
  }
  // True once in so many; never when 0.
  bool OneIn(std::uint32_t count) { return count != 0 && Below(count) == 0; }
  std::uint8_t Byte() { return static_cast<std::uint8_t>(Next()); }
  template <class T>
  T Pick(std::initializer_list<T> values) {
    return values.begin()[Below(static_cast<std::uint32_t>(values.size()))];
  }

 private:
  std::uint64_t state_;
};

}  // namespace pmddb832::models
