#pragma once

#include <string>

#include "interface/exports.h"
#include "interface/lifecycle.h"
#include "platform/native.h"
#include "tests/transport/scripted_device.h"
#include "transport/call.h"

namespace pmddb832::tests {

// A module as it is right after its library was loaded, a zeroed settings record and a scripted
// device in interface mode. The end of the scope is the unload; the conversation must have been the
// scripted one by then.
class ModuleFixture {
 public:
  ModuleFixture();
  ~ModuleFixture();
  ModuleFixture(const ModuleFixture&) = delete;
  ModuleFixture& operator=(const ModuleFixture&) = delete;

  // Creates the channel, and nothing else.
  DeviceDriver* MakeChannel() { return PMInit(settings, 0, 1); }
  // What a call of an export would hand down now.
  Call& CallNow() {
    call_.channel = currentChannel;
    return call_;
  }

  // Members of the settings, "resolution=50 originX=0.5": sets them, and checks that they are so.
  void Set(const std::string& members);
  void CheckSettings(const std::string& members) const;

  ScannerSettings settings{};
  ScriptedDevice device;
  platform::NativePlatform& system = platform::Native();

 private:
  Call call_{settings, nullptr};
};

}  // namespace pmddb832::tests
