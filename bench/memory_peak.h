#pragma once

#include <cstddef>

namespace pmddb832::bench {

// How much the resident memory of this process grew at its peak since the watch was made.
class MemoryWatch {
 public:
  MemoryWatch();
  // 0 where the system does not tell.
  std::size_t GrownKilobytes() const;

 private:
  std::size_t residentKilobytes_;
};

}  // namespace pmddb832::bench
