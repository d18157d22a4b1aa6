#pragma once

#include <memory>

namespace pmscan {

// What the system's own services need before the module, a picture or a device uses them: they are
// ready as long as what is returned lives.
[[nodiscard]] std::shared_ptr<void> UseSystemServices();

}  // namespace pmscan
