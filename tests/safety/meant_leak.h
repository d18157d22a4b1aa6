#pragma once

#if defined(__has_feature)
#if __has_feature(address_sanitizer)
#define PMDDB832_HAS_LEAK_CHECK 1
#include <sanitizer/lsan_interface.h>
#endif
#endif

namespace pmddb832::tests {

// What is allocated while it lives may leak: the command set that a further open leaves behind, as
// hosts know it.
class MeantLeak {
 public:
#ifdef PMDDB832_HAS_LEAK_CHECK
  MeantLeak() {
    __lsan_disable();
  }
  ~MeantLeak() {
    __lsan_enable();
  }
#else
  MeantLeak() = default;
  ~MeantLeak() {}
#endif
  MeantLeak(const MeantLeak&) = delete;
  MeantLeak& operator=(const MeantLeak&) = delete;
};

}  // namespace pmddb832::tests
