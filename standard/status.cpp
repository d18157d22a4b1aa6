#include "interface/scanner_settings.h"
#include "platform/trace.h"
#include "standard/std_scan_cmd.h"
#include "wire/error_codes.h"
#include "wire/protocol_bytes.h"

namespace pmddb832 {
namespace {

bool ReportsError(const StatusReply& reply) {
  return status::IsSet(Get(reply, status_reply::kHeaderStatus), status_reply::kHeaderError) ||
         status::IsSet(Get(reply, status_reply::kMain), status::kFatalError);
}

}  // namespace

// Scanners below level code 2, and those of code 5, do not know the command: their status is 0.
std::uint32_t StdScanCmd::GetStatusNoE(StatusReply& destination) {
  const TraceScope trace{"Scmdnt::GetStatusNoE"};
  destination.fill(0);
  if (commandLevel_ < 2 || commandLevel_ == 5) return 1;
  const std::span reply{destination};
  constexpr std::size_t kHeaderBytes = sizeof(ReplyHeader);
  if (SendEscCode('f') == 0 || Wire().Read(reply.first<kHeaderBytes>()) == 0) return 0;
  if (Get(destination, kReplyStx) != kStx) return 0;
  const std::span data = reply.subspan<kHeaderBytes>();
  const std::uint16_t count = Get(destination, kReplyCount);
  return count > data.size() ? 0 : Wire().Read(data.first(count));
}

std::uint32_t StdScanCmd::CheckWarmup() {
  const TraceScope trace{"Scmdnt::CheckWarmup"};
  if (GetStatusNoE(replyBuffer_) == 0) return Fail(kScannerError);
  const ErrorCode condition = status::StartCondition(Get(replyBuffer_, status_reply::kMain));
  return condition == kNoError ? 1 : Fail(condition);
}

std::uint32_t StdScanCmd::GetOptionStatus(std::uint8_t* mainStatus, std::uint32_t option) {
  const TraceScope trace{"Scmdnt::GetOptionStatus"};
  lastError_ = kNoError;
  StatusReply reply;
  if (GetStatusNoE(reply) == 0) return kUnreadable;
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

std::uint32_t StdScanCmd::GetScanPaperSize(std::uint32_t option, std::uint32_t* width,
                                           std::uint32_t* height) {
  const TraceScope trace{"Scmdnt::GetScanPaperSize"};
  if (GetStatusNoE(replyBuffer_) == 0) return kUnreadable;
  const AreaSize paper = PaperSize(option);
  *width = paper.width;
  *height = paper.height;
  return kNoError;
}

std::uint32_t StdScanCmd::EnableOption(std::uint32_t value) {
  const TraceScope trace{"Scmdnt::EnableOption"};
  const bool onOrOff = currentSettings->docFeedOption == kTransparencyUnit;
  return SendParam2('e', static_cast<std::uint8_t>(onOrOff && value != 0 ? 1u : value));
}

}  // namespace pmddb832
