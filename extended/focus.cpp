#include "wire/focus.h"

#include "extended/ext_scan_cmd.h"
#include "interface/scanner_settings.h"
#include "platform/operating_system.h"
#include "platform/trace.h"
#include "wire/error_codes.h"

namespace pmddb832 {

std::uint8_t ExtScanCmd::SetFocusPos(std::uint32_t mode, std::uint8_t position) {
  const TraceScope trace{"Extcmd::SetFocusPos"};
  if (currentSettings->commandLevel != kFocusCommandLevel) return position;
  return HostFocusPosition(ExeSetFocusPos(mode, WireFocusPosition(position)));
}

std::uint8_t ExtScanCmd::ExeSetFocusPos(std::uint32_t mode, std::uint8_t positionByte) {
  const TraceScope trace{"Extcmd::ExeSetFocusPos"};
  if (mode != 0) return FocusAutomatically(positionByte);
  return SendESCOneParam('p', positionByte) != 0 ? positionByte : kFocusUnknown;
}

std::uint8_t ExtScanCmd::FocusAutomatically(std::uint8_t positionByte) {
  widthPx_ = currentSettings->areaWidthPx;
  heightPx_ = currentSettings->areaHeightPx;
  SetPixelType();
  if (SetupScanParameter() == 0) {
    Fail(kScannerError);
    return positionByte;
  }
  SendESCOneParam('p', kFocusAutomatic);
  platform::SleepMilliseconds(kFocusMilliseconds);
  return ReadFocusPosition();
}

}  // namespace pmddb832
