#include "fuzz/host_calls.h"

#include <array>
#include <cstdlib>
#include <cstring>

#include "fuzz/fuzz_host.h"
#include "interface/exports.h"
#include "interface/lifecycle.h"
#include "wire/error_codes.h"

namespace pmddb832::fuzz {
namespace {

constexpr std::uint32_t kProcessAttach = 1;
constexpr std::uint32_t kThreadAttach = 2;

FuzzHost* currentHost = nullptr;

void CallOutOfProgress(std::uint32_t /*percent*/) {
  currentHost->MakeNextCall();
}

// What the host gets as an error must be a code that is listed.
void Expect(std::uint32_t code) {
  if (WordsOf(code).code != code) std::abort();
}

void AskPaperSize(std::uint32_t option) {
  std::uint32_t width = 0;
  std::uint32_t height = 0;
  Expect(PMGetScanPaperSize(option, &width, &height));
}

// The host's objects stay what they are, or are taken away.
void WriteRecord(FuzzHost& host, std::uint8_t row, std::uint32_t value) {
  const SettingsField& field = kScannerSettingsFields[row % kScannerSettingsFields.size()];
  ScannerSettings& settings = host.settings;
  auto* const record = reinterpret_cast<std::uint8_t*>(&settings) + field.offset;
  for (std::size_t i = 0; i < field.width; ++i) {
    record[i] = static_cast<std::uint8_t>(value >> 8 * (i % sizeof value));
  }
  if (settings.deviceInterface != nullptr) settings.deviceInterface = &host.device;
  if (settings.progressWindow != nullptr) settings.progressWindow = &host;
}

std::uint32_t ReadDirectly(std::uint8_t* buffer, std::uint32_t length) {
  return currentHost->device.RawReadData(buffer, &length, nullptr) < 0 ? 1 : 0;
}

std::uint32_t WriteDirectly(const std::uint8_t* buffer, std::uint32_t length) {
  return currentHost->device.RawWriteData(const_cast<std::uint8_t*>(buffer), length, nullptr) < 0
             ? 1
             : 0;
}

void GoDirect(FuzzHost& host, std::uint32_t entries) {
  host.settings.useDeviceInterface = 0;
  if (currentChannel == nullptr) return;
  currentChannel->readEntry = (entries & 1) != 0 ? ReadDirectly : nullptr;
  currentChannel->writeEntry = (entries & 2) != 0 ? WriteDirectly : nullptr;
  if ((entries & 4) != 0) currentChannel->closeEntry = [](std::uintptr_t) {};
}

// Not out of a call of the module, which would return into what is gone.
void UnloadAndLoad(FuzzHost& host) {
  if (host.IsWithinCall()) return;
  host.Unload();
  DllMain(nullptr, kProcessAttach, nullptr);
  DllMain(&host, kThreadAttach, nullptr);
  DllMain(&host, kProcessAttach, nullptr);
}

using Action = void (*)(FuzzHost& host, std::uint8_t argument, std::uint32_t value);

constexpr std::array<Action, kHostActions> kActions{
    [](FuzzHost& host, std::uint8_t format, std::uint32_t rows) { host.Scan(format, rows); },
    [](FuzzHost& host, std::uint8_t format, std::uint32_t calls) {
      host.SetUp(format, calls % 2 != 0 ? CallOutOfProgress : nullptr);
    },
    [](FuzzHost& host, std::uint8_t rows, std::uint32_t status) { host.Acquire(rows, status); },
    [](FuzzHost& host, std::uint8_t status, std::uint32_t bytes) {
      host.AcquireInto(bytes, status);
    },
    [](FuzzHost&, std::uint8_t, std::uint32_t) { PMAbortScan(); },
    [](FuzzHost&, std::uint8_t mode, std::uint32_t position) {
      PMSetFocus(mode, static_cast<std::uint8_t>(position));
    },
    [](FuzzHost&, std::uint8_t option, std::uint32_t) { Expect(PMGetOptionStatus(option)); },
    [](FuzzHost&, std::uint8_t option, std::uint32_t) { AskPaperSize(option); },
    [](FuzzHost&, std::uint8_t, std::uint32_t value) { PMEnableOption(value); },
    [](FuzzHost&, std::uint8_t, std::uint32_t) { Expect(PMGetScanError()); },
    [](FuzzHost&, std::uint8_t, std::uint32_t) { PMReset(); },
    [](FuzzHost&, std::uint8_t, std::uint32_t) { PMFeed(nullptr); },
    [](FuzzHost&, std::uint8_t, std::uint32_t) { PMEject(nullptr); },
    [](FuzzHost&, std::uint8_t, std::uint32_t) { PMCloseScanner(); },
    [](FuzzHost& host, std::uint8_t, std::uint32_t) { host.Open(); },
    [](FuzzHost& host, std::uint8_t which, std::uint32_t) {
      PMSetScannerHardware(which % 2 != 0 ? nullptr : &host.settings);
    },
    [](FuzzHost& host, std::uint8_t, std::uint32_t) { host.ChooseScan(); },
    [](FuzzHost& host, std::uint8_t field, std::uint32_t value) {
      WriteRecord(host, field, value);
    },
    [](FuzzHost& host, std::uint8_t, std::uint32_t entries) { GoDirect(host, entries); },
    [](FuzzHost& host, std::uint8_t, std::uint32_t) { UnloadAndLoad(host); },
    [](FuzzHost&, std::uint8_t, std::uint32_t) { PMOpenScanner(nullptr); },
};

}  // namespace

void MakeCall(FuzzHost& host, const HostCall& call) {
  currentHost = &host;
  host.device.NextCall();
  const std::size_t what = Get(call, host_call::kWhat) % kHostActions;
  kActions[what](host, Get(call, host_call::kArgument), Get(call, host_call::kValue));
}

}  // namespace pmddb832::fuzz
