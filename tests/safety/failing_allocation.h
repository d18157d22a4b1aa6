#pragma once

#include <cstddef>

namespace pmddb832::tests {

// While it lives, the module's allocations (operator new with std::nothrow) return null after
// `allocationsLeft` successful ones.
struct AllocationLimit {
  explicit AllocationLimit(std::size_t allocationsLeft);
  ~AllocationLimit();
  AllocationLimit(const AllocationLimit&) = delete;
  AllocationLimit& operator=(const AllocationLimit&) = delete;
};

// Allocations of that kind since the program started, failed ones included.
std::size_t AllocationCount();

}  // namespace pmddb832::tests
