#pragma once

namespace pmscan {

// What the system's own services need before the module, a picture or a device uses them, as long
// as this lives.
class SystemServices {
 public:
  SystemServices();
  ~SystemServices();
  SystemServices(const SystemServices&) = delete;
  SystemServices& operator=(const SystemServices&) = delete;
};

}  // namespace pmscan
