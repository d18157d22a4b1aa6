#define WIN32_LEAN_AND_MEAN
#include "pmscan/command_line/system_services.h"

#include <windows.h>
// windows.h comes first: the other header builds on it.
#include <objbase.h>

namespace pmscan {

std::shared_ptr<void> UseSystemServices() {
  CoInitializeEx(nullptr, COINIT_MULTITHREADED);
  return {nullptr, [](void*) { CoUninitialize(); }};
}

}  // namespace pmscan
