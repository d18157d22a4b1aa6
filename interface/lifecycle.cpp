#include "interface/lifecycle.h"

#include <new>

#include "extended/ext_scan_cmd.h"
#include "interface/call_scope.h"
#include "interface/command_level_probe.h"
#include "platform/trace.h"
#include "standard/std_scan_cmd.h"
#include "wire/error_codes.h"
#include "wire/reply_shapes.h"

namespace pmddb832 {
namespace {

// An earlier log stays referenced: scopes that are still open write to it.
void CreateLog() {
  platform::currentLog = platform::CreateTraceLog(moduleInstance);
  if (platform::currentLog == nullptr) return;
  platform::WriteTrace(*platform::currentLog, "driver Loaded successfully", "",
                       platform::kDetailLoadAndUnload);
}

// The calls under way, if there are any, go on without it.
void DestroyChannel() {
  if (currentChannel == nullptr) return;
  CallScope::ForgetChannel();
  currentChannel->recordAtEnd = currentSettings;
  delete currentChannel;
  currentChannel = nullptr;
}

GeneralCmd* NewCommandSet(std::uint8_t probeOption) {
  if (UsesExtendedSet()) return new (std::nothrow) ExtScanCmd(probeOption);
  return new (std::nothrow) StdScanCmd(probeOption);
}

void DestroyCommandSet() {
  if (UsesExtendedSet()) {
    delete static_cast<ExtScanCmd*>(currentCommandSet);
  } else {
    delete static_cast<StdScanCmd*>(currentCommandSet);
  }
  currentCommandSet = nullptr;
}

bool CreateCommandSet(std::uint8_t probeOption) {
  currentCommandSet = NewCommandSet(probeOption);
  if (currentCommandSet == nullptr) return false;
  if (currentCommandSet->Wire() != nullptr && currentCommandSet->InitWorkArea() != 0) return true;
  DestroyCommandSet();
  return false;
}

// The channel is gone when the host opened a scanner again from within the probe.
bool ProbeAndCreateCommandSet(Call& call, std::uint8_t probeOption) {
  serverSupport = call.channel->GetScanServerSupportFunction();
  initialisationError = ExtCommandSupport(call, probeOption);
  if (initialisationError == 0 && CreateCommandSet(probeOption)) return true;
  if (call.channel != nullptr) call.channel->Close(call.settings);
  return false;
}

}  // namespace

bool UsesExtendedSet() {
  return extendedSupport != 0 && (serverSupport & kExtendedSetSupported) != 0;
}

DeviceDriver* PMInit(ScannerSettings& settings, std::uint8_t probeOption,
                     std::uint32_t createOnly) {
  CreateLog();
  const TraceScope trace{"Pmddb832::PMInit"};
  DestroyChannel();
  currentChannel = new (std::nothrow) DeviceDriver;
  if (currentChannel == nullptr || createOnly != 0) return currentChannel;
  CallScope scope(settings, currentChannel);
  if (currentChannel->IsReady(settings) != 0 && ProbeAndCreateCommandSet(scope.call, probeOption)) {
    return currentChannel;
  }
  DestroyChannel();
  return nullptr;
}

void PMExit() {
  const TraceScope trace{"Pmddb832::PMExit"};
  if (currentCommandSet != nullptr) {
    ScannerSettings unnamed{};
    unnamed.useDeviceInterface = 1;
    CallScope scope(currentSettings != nullptr ? *currentSettings : unnamed, currentChannel);
    currentCommandSet->Close(scope.call);
    DestroyCommandSet();
  }
  DestroyChannel();
}

std::uint32_t ExtCommandSupport(Call& call, std::uint8_t option) {
  const TraceScope trace{"Pmddb832::ExtCommandSupport"};
  Checkcmd probe(option);
  if (probe.Wire() == nullptr) return kNoTransport;
  if (probe.Open(call) == 0 || probe.GetLevelInfo(call) == 0) return probe.GetLastError();
  const Checkcmd::LevelInfo& level = probe.Level();
  extendedSupport = (level.status & level_reply::kKnowsExtendedCommands) != 0 ? 1 : 0;
  commandLevelString[0] = static_cast<char>(level.letter);
  commandLevelString[1] = static_cast<char>(level.digit);
  probe.Close(call);
  return 0;
}

}  // namespace pmddb832
