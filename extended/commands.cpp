#include "extended/ext_scan_cmd.h"
#include "interface/scanner_settings.h"
#include "platform/trace.h"
#include "wire/document_source.h"
#include "wire/error_codes.h"

namespace pmddb832 {
namespace {

using status::IsSet;

// The bits of a unit count only with its error summary.
std::uint32_t OptionCondition(std::uint32_t source, const StatusBlock& block) {
  const std::uint8_t feeder = Get(block, status::kFeeder);
  const std::uint8_t unit = Get(block, status::kTransparency);
  if (source == kFeeder && IsSet(feeder, status::kErrorSummary)) {
    return status::FeederCondition(feeder);
  }
  if (source == kTransparencyUnit && IsSet(unit, status::kErrorSummary)) {
    return status::TransparencyCondition(unit);
  }
  return kNoError;
}

}  // namespace

std::uint32_t ExtScanCmd::SendFSCode(std::uint8_t letter) {
  const TraceScope trace{"Extcmd::SendFSCode"};
  if (letter == 'G') NoteScanStarted();
  return Wire().SendFSCode(letter);
}

std::uint32_t ExtScanCmd::GetStatusBuffer(StatusBlock& destination) {
  const TraceScope trace{"Extcmd::GetStatusBuffer"};
  if (SendFSCode('F') == 0) return 0;
  return Wire().Read(destination);
}

std::uint32_t ExtScanCmd::SendESCOneParam(std::uint8_t letter, std::uint8_t parameter) {
  const TraceScope trace{"Extcmd::SendESCOneParam"};
  return SendEscBlock(letter, {&parameter, 1});
}

std::uint32_t ExtScanCmd::SendCorrectionData(std::uint8_t letter, std::uint8_t selector,
                                             std::span<const std::uint8_t> data) {
  const TraceScope trace{"Extcmd::SendCorrectionData"};
  return SendEscTable(letter, selector, data);
}

std::uint32_t ExtScanCmd::GetOptionStatus(std::uint8_t* mainStatus, std::uint32_t source) {
  const TraceScope trace{"Extcmd::GetOptionStatus"};
  errorCode_ = kNoError;
  if (GetStatusBuffer(*status_) == 0) return kUnreadable;
  const std::uint8_t main = Get(*status_, status::kMain);
  if (mainStatus != nullptr) *mainStatus = main;
  if (IsSet(main, status::kNotReady)) return kNotReady;
  const std::uint32_t condition = OptionCondition(source, *status_);
  if (condition != kNoError) return condition;
  return IsSet(main, status::kFatalError) ? kScannerError : kNoError;
}

std::uint32_t ExtScanCmd::GetScanPaperSize(std::uint32_t source, std::uint32_t* width,
                                           std::uint32_t* height) {
  const TraceScope trace{"Extcmd::GetScanPaperSize"};
  const std::uint32_t lastError = errorCode_;
  if (ReadIdentity() == 0) {
    errorCode_ = lastError;  // the result alone reports a failed query
    return kUnreadable;
  }
  AreaSize area = flatbed_;
  if (source == kFeeder && currentSettings->scanSource != 0) {
    TakeFeederArea();
    area = option_;
  } else if (source == kTransparencyUnit && currentSettings->scanSource != 0) {
    area = {Get(*identity_, identity::kTransparencyWidth),
            Get(*identity_, identity::kTransparencyHeight)};
  }
  const std::uint32_t basicResolution = Get(*identity_, identity::kBasicResolution);
  const std::uint32_t maximumResolution = Get(*identity_, identity::kMaximumResolution);
  *width = area.width * maximumResolution / 2 / basicResolution;
  *height = area.height * maximumResolution / 2 / basicResolution;
  return kNoError;
}

void ExtScanCmd::TakeFeederArea() {
  option_ = {Get(*identity_, identity::kFeederWidth), Get(*identity_, identity::kFeederHeight)};
  optionCopy_ = option_;
}

std::uint32_t ExtScanCmd::CheckWarmup() {
  const TraceScope trace{"Extcmd::CheckWarmup"};
  if (GetStatusBuffer(*status_) == 0) return Fail(kScannerError);
  const ErrorCode condition = status::StartCondition(Get(*status_, status::kMain));
  return condition == kNoError ? 1 : Fail(condition);
}

// The transparency unit and a plain feeder know only off and on; the feeder variant and the flatbed
// get the value as it is.
std::uint32_t ExtScanCmd::OptionUnitValue(std::uint32_t value) {
  const ScannerSettings& settings = *currentSettings;
  const bool onOrOff = settings.docFeedOption == kTransparencyUnit ||
                       (settings.docFeedOption == kFeeder && settings.mainStatusBit5 == 0);
  return onOrOff && value != 0 ? 1 : value;
}

std::uint32_t ExtScanCmd::EnableOption(std::uint32_t value) {
  const TraceScope trace{"Extcmd::EnableOption"};
  const auto sent = static_cast<std::uint8_t>(OptionUnitValue(value));
  if (SendESCOneParam('e', sent) == 0) return 0;
  Put(*parameters_, parameter::kOptionUnit, sent);
  return 1;
}

}  // namespace pmddb832
