#include "interface/scanner_settings.h"
#include "platform/operating_system.h"
#include "platform/trace.h"
#include "standard/settings_upload.h"
#include "standard/std_commands.h"
#include "standard/std_scan_cmd.h"
#include "transport/focus_query.h"
#include "wire/commands.h"
#include "wire/focus.h"

namespace pmddb832 {
namespace {

bool ReportsError(const StatusReply& reply) {
  return status::IsSet(Get(reply, status_reply::kHeaderStatus), status_reply::kHeaderError) ||
         status::IsSet(Get(reply, status_reply::kMain), status::kFatalError);
}

}  // namespace

std::uint32_t StdScanCmd::GetOptionStatus(Call& call, std::uint8_t* mainStatus,
                                          std::uint32_t option) {
  const TraceScope trace{"Scmdnt::GetOptionStatus"};
  LastError() = kNoError;
  StatusReply reply;
  if (Scmdnt::GetStatusNoE(*this, call, facts_.level, reply) == 0) return kUnreadable;
  if (mainStatus != nullptr) *mainStatus = Get(reply, status_reply::kMain);
  const std::uint8_t feeder = Get(reply, status_reply::kFeeder);
  if (option == kFeeder && status::IsSet(feeder, status::kErrorSummary)) {
    return status::FeederCondition(feeder);
  }
  const std::uint8_t unit = Get(reply, status_reply::kTransparency);
  if (option == kTransparencyUnit && status::IsSet(unit, status::kErrorSummary)) {
    return status::TransparencyCondition(unit);
  }
  return option <= kFlatbed && ReportsError(reply) ? kScannerError : kNoError;
}

std::uint32_t StdScanCmd::GetScanPaperSize(Call& call, std::uint32_t option, std::uint32_t* width,
                                           std::uint32_t* height) {
  const TraceScope trace{"Scmdnt::GetScanPaperSize"};
  if (Scmdnt::GetStatusNoE(*this, call, facts_.level, replyBuffer_) == 0) return kUnreadable;
  const AreaSize paper = PaperSize(option);
  *width = paper.width;
  *height = paper.height;
  return kNoError;
}

// What the status in the reply buffer says of an option's page, else what is known of its area. A
// feeder's page is the area of later scans.
AreaSize StdScanCmd::PaperSize(std::uint32_t option) {
  const std::uint8_t feeder = Get(replyBuffer_, status_reply::kFeeder);
  if (option == kFeeder && status::IsSet(feeder, status::kErrorSummary)) {
    facts_.areas[kOptionArea] = facts_.areas[kFeederArea] = FeederArea(replyBuffer_, facts_);
    return facts_.areas[kFeederArea];
  }
  const std::uint8_t unit = Get(replyBuffer_, status_reply::kTransparency);
  if (option <= kTransparencyUnit && status::IsSet(unit, status::kErrorSummary)) {
    return TransparencyArea(replyBuffer_, facts_);
  }
  return facts_.areas[option == kFlatbed ? kFlatbedArea : kOptionArea];
}

std::uint32_t StdScanCmd::EnableOption(Call& call, std::uint32_t value) {
  const TraceScope trace{"Scmdnt::EnableOption"};
  const bool onOrOff = call.settings.docFeedOption == kTransparencyUnit;
  return Scmdnt::SendParam2(*this, call, esc::kOptionUnit,
                            static_cast<std::uint8_t>(onOrOff && value != 0 ? 1u : value));
}

std::uint8_t StdScanCmd::SetFocusPos(Call& call, std::uint32_t mode, std::uint8_t position) {
  const TraceScope trace{"Scmdnt::SetFocusPos"};
  if (!TraitsOf(call.settings.commandLevel).focus) return position;
  return HostFocusPosition(ExeSetFocusPos(call, mode, WireFocusPosition(position)));
}

// A manual position counts as reached, also when the scanner did not acknowledge it. Without an
// identified scanner there is no area to focus on.
std::uint8_t StdScanCmd::ExeSetFocusPos(Call& call, std::uint32_t mode, std::uint8_t positionByte) {
  const TraceScope trace{"Scmdnt::ExeSetFocusPos"};
  if (mode == 0) {
    Scmdnt::SendParam2(*this, call, esc::kFocusPosition, positionByte);
    return positionByte;
  }
  if (facts_.resolutionCount == 0) return kFocusUnknown;
  TakeScan(call.settings);
  Scmdnt::UpdateSettings(*this, call, facts_, plan_);
  Scmdnt::SendParam2(*this, call, esc::kFocusPosition, kFocusAutomatic);
  platform::SleepMilliseconds(kFocusMilliseconds);
  return ReadFocusPosition(*this, call, replyBuffer_);
}

}  // namespace pmddb832
