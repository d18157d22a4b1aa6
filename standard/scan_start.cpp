
#include "interface/scanner_settings.h"
#include "platform/operating_system.h"
#include "platform/trace.h"
#include "standard/line_size.h"
#include "standard/settings_upload.h"
#include "standard/std_commands.h"
#include "standard/std_scan_cmd.h"
#include "transport/device_driver.h"
#include "wire/commands.h"

namespace pmddb832 {
namespace {

// The system is asked of what kind it is, and then no model waits: the wait is for a model that has
// two names at once.
void WaitForModel(Call& call) {
  if (call.channel != nullptr) call.channel->GetOpsys();
}

// What keeps an option unit from scanning. A feeder that reports that it is empty may start all the
// same, whatever else it reports.
ErrorCode OptionError(const StatusReply& reply, std::uint32_t optionKind) {
  const bool isFeeder = optionKind == kFeeder;
  const std::uint8_t unit =
      isFeeder ? Get(reply, status_reply::kFeeder) : Get(reply, status_reply::kTransparency);
  if (isFeeder && status::IsSet(unit, status::kEmpty)) return kNoError;
  if (isFeeder && status::IsSet(unit, status::kOpen)) return kOptionOpen;
  return status::IsSet(unit, status::kJammed) ? kOptionJammed : kNoError;
}

void SetPixelType(ScanPlan& plan, const ScannerSettings& settings) {
  const TraceScope trace{"Scmdnt::SetPixelType"};
  const PixelFormat* format = FindPixelFormat(settings.pixelType, settings.previewMode != 0);
  if (format == nullptr) return;
  plan.format = *format;
  plan.pixelType = settings.pixelType;
}

}  // namespace

void StdScanCmd::InitAcquire(Call& call, std::uint32_t outputFormat, ProgressCallback progress,
                             AcquisitionSetup* setup) {
  const TraceScope trace{"Scmdnt::InitAcquire"};
  LastError() = kNoError;
  TakeScan(call.settings);
  plan_.outputFormat = outputFormat;
  plan_.reorder = outputFormat != kPlainOutputFormat;
  plan_.hostLineBytes = HostLineBytes(plan_.width, plan_.format, outputFormat);
  if (plan_.hostLineBytes == 0) {
    Fail(kEmptyLine);
    return;
  }
  linesDone_ = 0;
  linesTotal_ = plan_.height;
  progress_ = progress;
  stream_.SetUp();
  const bool fits = FitsOneTransfer(plan_.hostLineBytes, plan_.pixelType, plan_.format);
  if (!fits) Fail(kTooLarge);
  setup->status = fits ? kAcquisitionGoOn : kAcquisitionFailed;
  setup->lineBytes = plan_.hostLineBytes;
  setup->widthPixels = plan_.width;
  setup->heightLines = plan_.height;
}

void StdScanCmd::TakeScan(const ScannerSettings& settings) {
  TakeArea(plan_, settings);
  plan_.sentWidth = plan_.width;
  SetPixelType(plan_, settings);
}

std::uint32_t StdScanCmd::InitiateScan(Call& call) {
  const TraceScope trace{"Scmdnt::InitiateScan"};
  const std::uint32_t setUp = stream_.SetUpNumber();
  stream_.Begin();
  Scmdnt::UpdateSettings(*this, call, facts_, plan_);
  if (LastError() != kNoError || !CheckOptionUnit(call) || !ChooseBlocks(call)) return 0;
  if (!StartScanner(call)) return 0;
  WaitForModel(call);
  // The host may have set another scan up out of its device or a repaint.
  if (stream_.SetUpNumber() != setUp) {
    Fail(kTransferFailed);
    return 0;
  }
  stream_.ForgetBlock();
  return 1;
}

bool StdScanCmd::CheckOptionUnit(Call& call) {
  if (!facts_.optionAvailable || call.settings.scanSource == 0) return true;
  if (Scmdnt::GetStatusNoE(*this, call, facts_.level, replyBuffer_) == 0) return Fail(kUnreadable);
  const ErrorCode error = OptionError(replyBuffer_, facts_.optionKind);
  if (error != kNoError) return Fail(error);
  return true;
}

bool StdScanCmd::ChooseBlocks(Call& call) {
  const bool severalLines = SendsLinesInBlocks(call.settings.commandLevelText[1]);
  const std::uint32_t lines = stream_.ChooseBlocks(severalLines, plan_);
  if (lines == 0) return Fail(kTooLarge);
  if (severalLines) {
    Scmdnt::SendParam2(*this, call, esc::kLinesPerBlock, static_cast<std::uint8_t>(lines));
  }
  return true;
}

// A scanner that reports an error is asked once more; its second header comes with the first block.
bool StdScanCmd::StartScanner(Call& call) {
  stream_.TakeStartHeader(std::nullopt);
  if (!RequestScan(call)) return false;
  BlockHeader header{};
  if (Wire()->Read(call, header) == 0) return Fail(kTransferFailed);
  if (status::IsSet(Get(header, block::kStatus), block::kError)) return RequestScan(call);
  stream_.TakeStartHeader(header);
  return true;
}

bool StdScanCmd::RequestScan(Call& call) {
  if (Scmdnt::CheckWarmup(*this, call, facts_.level, replyBuffer_) == 0) return false;
  platform::RepaintNow(call.settings.progressWindow);
  if (SendEscCode(call, esc::kStart) == 0) return Fail(kTransferFailed);
  return true;
}

}  // namespace pmddb832
