#include "tests/interface/module_fixture.h"

#include <algorithm>
#include <iterator>

#include "platform/trace.h"

namespace pmddb832::tests {

ModuleFixture::ModuleFixture() {
  system = {};
  settings.deviceInterface = &device;
  settings.useDeviceInterface = 1;
  currentSettings = &settings;
}

ModuleFixture::~ModuleFixture() {
  settings.deviceInterface = nullptr;
  PMExit();
  platform::currentLog = nullptr;
  currentSettings = nullptr;
  moduleInstance = nullptr;
  extendedSupport = 0;
  serverSupport = 0;
  initialisationError = 0;
  std::fill(std::begin(commandLevelString), std::end(commandLevelString), '\0');
}

}  // namespace pmddb832::tests
