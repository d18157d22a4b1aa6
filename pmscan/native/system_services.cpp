#include "pmscan/command_line/system_services.h"

namespace pmscan {

// This system's ask for nothing.
std::shared_ptr<void> UseSystemServices() {
  return nullptr;
}

}  // namespace pmscan
