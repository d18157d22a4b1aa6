#include "tests/safety/failing_allocation.h"

#include <new>
#include <optional>

namespace {

std::optional<std::size_t> left;
bool refusesOnce = false;
std::size_t count = 0;

bool MayAllocate() {
  ++count;
  if (left == 0) {
    if (refusesOnce) left.reset();
    return false;
  }
  if (left.has_value()) --*left;
  return true;
}

}  // namespace

void* operator new(std::size_t bytes, const std::nothrow_t&) noexcept {
  return MayAllocate() ? ::operator new(bytes) : nullptr;
}
void* operator new[](std::size_t bytes, const std::nothrow_t&) noexcept {
  return MayAllocate() ? ::operator new[](bytes) : nullptr;
}

namespace pmddb832::tests {

AllocationLimit::AllocationLimit(std::size_t allocationsLeft) {
  left = allocationsLeft;
}
AllocationLimit::~AllocationLimit() {
  left.reset();
}

RefusedAllocation::RefusedAllocation(std::size_t allocationsBefore) {
  left = allocationsBefore;
  refusesOnce = true;
}
RefusedAllocation::~RefusedAllocation() {
  left.reset();
  refusesOnce = false;
}

std::size_t AllocationCount() {
  return count;
}

}  // namespace pmddb832::tests
