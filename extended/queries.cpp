#include "extended/ext_commands.h"
#include "extended/ext_scan_cmd.h"
#include "extended/parameters.h"
#include "interface/scanner_settings.h"
#include "platform/operating_system.h"
#include "platform/trace.h"
#include "transport/focus_query.h"
#include "wire/command_level.h"
#include "wire/commands.h"
#include "wire/document_source.h"
#include "wire/focus.h"

namespace pmddb832 {
namespace {

using status::IsSet;

// The bits of a unit count only with its error summary.
std::uint32_t OptionCondition(std::uint32_t option, const StatusBlock& block) {
  const std::uint8_t feeder = Get(block, status::kFeeder);
  const std::uint8_t unit = Get(block, status::kTransparency);
  if (option == kFeeder && IsSet(feeder, status::kErrorSummary)) {
    return status::FeederCondition(feeder);
  }
  if (option == kTransparencyUnit && IsSet(unit, status::kErrorSummary)) {
    return status::TransparencyCondition(unit);
  }
  return kNoError;
}

}  // namespace

std::uint32_t ExtScanCmd::GetOptionStatus(Call& call, std::uint8_t* mainStatus,
                                          std::uint32_t option) {
  const TraceScope trace{"Extcmd::GetOptionStatus"};
  LastError() = kNoError;
  StatusBlock& block = *work_.status;
  if (Extcmd::GetStatusBuffer(*this, call, block) == 0) return kUnreadable;
  const std::uint8_t main = Get(block, status::kMain);
  if (mainStatus != nullptr) *mainStatus = main;
  if (IsSet(main, status::kNotReady)) return kNotReady;
  const std::uint32_t condition = OptionCondition(option, block);
  if (condition != kNoError) return condition;
  return IsSet(main, status::kFatalError) ? kScannerError : kNoError;
}

// The result alone reports a failed query. An option that is selected has the area of this reply,
// the flatbed that of the open.
std::uint32_t ExtScanCmd::GetScanPaperSize(Call& call, std::uint32_t option, std::uint32_t* width,
                                           std::uint32_t* height) {
  const TraceScope trace{"Extcmd::GetScanPaperSize"};
  const ErrorCode before = LastError();
  if (!ReadIdentity(call)) {
    Fail(before);
    return kUnreadable;
  }
  const ExtendedIdentity& told = facts_.identity;
  const bool selected = call.settings.scanSource != 0;
  AreaSize area = facts_.flatbed;
  if (option == kFeeder && selected) area = facts_.option = told.feeder;
  if (option == kTransparencyUnit && selected) area = told.transparencyUnit;
  *width = area.width * told.maximumResolution / 2 / told.basicResolution;
  *height = area.height * told.maximumResolution / 2 / told.basicResolution;
  return kNoError;
}

std::uint32_t ExtScanCmd::EnableOption(Call& call, std::uint32_t value) {
  const TraceScope trace{"Extcmd::EnableOption"};
  const auto sent = static_cast<std::uint8_t>(OptionUnitValue(call.settings, value));
  return Extcmd::SendESCOneParam(*this, call, esc::kOptionUnit, sent);
}

std::uint8_t ExtScanCmd::SetFocusPos(Call& call, std::uint32_t mode, std::uint8_t position) {
  const TraceScope trace{"Extcmd::SetFocusPos"};
  if (!TraitsOf(call.settings.commandLevel).focus) return position;
  return HostFocusPosition(ExeSetFocusPos(call, mode, WireFocusPosition(position)));
}

std::uint8_t ExtScanCmd::ExeSetFocusPos(Call& call, std::uint32_t mode, std::uint8_t positionByte) {
  const TraceScope trace{"Extcmd::ExeSetFocusPos"};
  if (mode == 0) {
    const bool sent = Extcmd::SendESCOneParam(*this, call, esc::kFocusPosition, positionByte) != 0;
    return sent ? positionByte : kFocusUnknown;
  }
  plan_.width = call.settings.areaWidthPx;
  plan_.height = call.settings.areaHeightPx;
  TakePixelType(plan_, call.settings);
  if (SetupScanParameter(call) == 0) {
    Fail(kScannerError);
    return positionByte;
  }
  Extcmd::SendESCOneParam(*this, call, esc::kFocusPosition, kFocusAutomatic);
  platform::SleepMilliseconds(kFocusMilliseconds);
  return ReadFocusPosition(*this, call, replyBuffer_);
}

}  // namespace pmddb832
