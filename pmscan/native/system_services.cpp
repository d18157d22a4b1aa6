#include "pmscan/command_line/system_services.h"

namespace pmscan {

// This system's ask for nothing.
SystemServices::SystemServices() = default;
SystemServices::~SystemServices() = default;

}  // namespace pmscan
