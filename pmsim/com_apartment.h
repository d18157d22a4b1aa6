#pragma once

#include <windows.h>
// windows.h comes first: the other header builds on it.
#include <objbase.h>

namespace pmsim {

// COM for this thread as long as this lives; a thread of the host that has it in another way keeps
// it so.
class ComApartment {
 public:
  ComApartment() : isOurs_(SUCCEEDED(CoInitializeEx(nullptr, COINIT_MULTITHREADED))) {}
  ~ComApartment() {
    if (isOurs_) CoUninitialize();
  }
  ComApartment(const ComApartment&) = delete;
  ComApartment& operator=(const ComApartment&) = delete;

 private:
  const bool isOurs_;
};

}  // namespace pmsim
