#include "tests/interface/module_fixture.h"

#include <doctest/doctest.h>

#include <algorithm>
#include <iterator>
#include <sstream>

#include "capture/file/settings_text.h"
#include "platform/trace.h"

namespace pmddb832::tests {
namespace {

// One member and its value.
capture::SettingsChange ChangeOf(const std::string& member) {
  const std::size_t equals = member.find('=');
  const SettingsField* const field = capture::FindField(member.substr(0, equals));
  REQUIRE(field != nullptr);
  const auto value = capture::ParseValue(*field, member.substr(equals + 1));
  REQUIRE(value.has_value());
  return {false, static_cast<std::uint32_t>(field->offset), *value};
}

}  // namespace

ModuleFixture::ModuleFixture() {
  system = {};
  settings.deviceInterface = &device;
  settings.useDeviceInterface = 1;
  currentSettings = &settings;
}

ModuleFixture::~ModuleFixture() {
  CHECK(device.Verdict() == "as scripted");
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

void ModuleFixture::Set(const std::string& members) {
  std::istringstream words(members);
  for (std::string member; words >> member;) {
    CAPTURE(member);
    capture::Apply(ChangeOf(member), settings);
  }
}

void ModuleFixture::CheckSettings(const std::string& members) const {
  std::istringstream words(members);
  for (std::string member; words >> member;) {
    ScannerSettings expected = settings;
    capture::Apply(ChangeOf(member), expected);
    for (const capture::SettingsChange& came : capture::Compare(expected, settings, true)) {
      FAIL_CHECK("expected " << member << ", came " << capture::ValueText(came));
    }
  }
}

}  // namespace pmddb832::tests
