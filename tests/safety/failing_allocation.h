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

// While it lives, the allocation of that kind behind so many successful ones returns null, and
// those behind it succeed again.
struct RefusedAllocation {
  explicit RefusedAllocation(std::size_t allocationsBefore);
  ~RefusedAllocation();
  RefusedAllocation(const RefusedAllocation&) = delete;
  RefusedAllocation& operator=(const RefusedAllocation&) = delete;
};

// Allocations of that kind since the program started, failed ones included.
std::size_t AllocationCount();

}  // namespace pmddb832::tests
