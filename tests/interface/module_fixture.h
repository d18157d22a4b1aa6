#pragma once

#include "interface/exports.h"
#include "interface/lifecycle.h"
#include "platform/native.h"
#include "tests/transport/scripted_device.h"

namespace pmddb832::tests {

// A module as it is right after its library was loaded, a zeroed settings record and a scripted
// device in interface mode. The end of the scope is the unload.
class ModuleFixture {
 public:
  ModuleFixture();
  ~ModuleFixture();
  ModuleFixture(const ModuleFixture&) = delete;
  ModuleFixture& operator=(const ModuleFixture&) = delete;

  ScannerSettings settings{};
  ScriptedDevice device;
  platform::NativePlatform& system = platform::Native();
};

}  // namespace pmddb832::tests
