#include "wire/focus.h"

#include "interface/scanner_settings.h"
#include "platform/operating_system.h"
#include "platform/trace.h"
#include "standard/std_scan_cmd.h"

namespace pmddb832 {

std::uint8_t StdScanCmd::SetFocusPos(std::uint32_t mode, std::uint8_t position) {
  const TraceScope trace{"Scmdnt::SetFocusPos"};
  if (currentSettings->commandLevel != kFocusCommandLevel) return position;
  return HostFocusPosition(ExeSetFocusPos(mode, WireFocusPosition(position)));
}

// A manual position counts as reached, also when the scanner did not acknowledge it.
std::uint8_t StdScanCmd::ExeSetFocusPos(std::uint32_t mode, std::uint8_t positionByte) {
  const TraceScope trace{"Scmdnt::ExeSetFocusPos"};
  if (mode != 0) return FocusAutomatically();
  SendParam2('p', positionByte);
  return positionByte;
}

// Without an identified scanner there is no area to focus on.
std::uint8_t StdScanCmd::FocusAutomatically() {
  if (resolutionCount_ == 0) return kFocusUnknown;
  TakeScanArea();
  UpdateSettings();
  SendParam2('p', kFocusAutomatic);
  platform::SleepMilliseconds(kFocusMilliseconds);
  return ReadFocusPosition();
}

}  // namespace pmddb832
