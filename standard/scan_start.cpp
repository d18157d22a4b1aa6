#include <algorithm>
#include <cstring>

#include "interface/scanner_settings.h"
#include "platform/operating_system.h"
#include "platform/trace.h"
#include "standard/line_size.h"
#include "standard/std_scan_cmd.h"
#include "transport/device_driver.h"
#include "wire/error_codes.h"

namespace pmddb832 {
namespace {

constexpr std::uint32_t kUsualReceiveSize = 0xFF00;
constexpr std::uint32_t kReceiveSlack = 16;
static_assert(kReceiveSlack >= kDataStart);
// No line that can be set up needs a hundredth of it: a longer one comes from a refused set-up.
constexpr std::uint32_t kLongestRawLine = 0x1000000;
constexpr std::uint32_t kMostLinesPerBlock = 255;
constexpr char kFirstBlockModeLevel = '4';

constexpr std::uint32_t kWindows98 = 3;
constexpr std::uint32_t kNt5 = 4;

bool IsModel(const char (&name)[8]) {
  return std::memcmp(currentSettings->modelName, name, sizeof name) == 0;
}

}  // namespace

std::uint32_t StdScanCmd::PrepareReceiveBuffer(bool fresh, std::uint32_t bufferBytes) {
  receiveBuffer_.reset();
  if (fresh) {
    receiveSize_ = kUsualReceiveSize;
    if (AllocateReceiveBuffer() != 0) return 1;
  }
  if (bufferBytes < kUsualReceiveSize) {
    const std::uint32_t lineRoom = RawLineRoom(areaWidth_, format_);
    if (lineRoom > kLongestRawLine) return Fail(kTooLarge);
    receiveSize_ = std::max(bufferBytes, lineRoom) + kDataStart;
  } else {
    receiveSize_ = std::max(receiveSize_, kUsualReceiveSize);
  }
  return AllocateReceiveBuffer();
}

std::uint32_t StdScanCmd::AllocateReceiveBuffer() {
  receivedBytes_ = 0;
  blockCapacity_ = receiveSize_ * RawLineRooms(pixelType_, format_);
  receiveBuffer_ = platform::MakeHeapBlock(blockCapacity_ + kReceiveSlack);
  return receiveBuffer_ != nullptr ? 1 : 0;
}

// While the scanner is being started there is no scan that could be aborted.
std::uint32_t StdScanCmd::InitiateScan() {
  const TraceScope trace{"Scmdnt::InitiateScan"};
  scanActive_ = 0;
  aborting_ = 0;
  ackPending_ = 1;
  blockLines_ = 0;
  blockLineIndex_ = 0;
  UpdateSettings();
  if (lastError_ != kNoError || CheckOptionUnit() == 0 || SetBlockMode() == 0) return 0;
  if (StartScanner() == 0) return 0;
  WaitForModel();
  scanActive_ = 1;
  return 1;
}

std::uint32_t StdScanCmd::CheckOptionUnit() {
  if (optionAvailable_ == 0 || currentSettings->scanSource == 0) return 1;
  if (GetStatusNoE(replyBuffer_) == 0) return Fail(kUnreadable);
  if (optionKind_ == kFeeder) return CheckFeeder();
  const std::uint8_t unit = Get(replyBuffer_, status_reply::kTransparency);
  return status::IsSet(unit, status::kJammed) ? Fail(kOptionJammed) : 1;
}

// A feeder that reports that it is empty may start all the same, whatever else it reports.
std::uint32_t StdScanCmd::CheckFeeder() {
  const std::uint8_t feeder = Get(replyBuffer_, status_reply::kFeeder);
  if (status::IsSet(feeder, status::kEmpty)) return 1;
  if (status::IsSet(feeder, status::kOpen)) return Fail(kOptionOpen);
  return status::IsSet(feeder, status::kJammed) ? Fail(kOptionJammed) : 1;
}

std::uint32_t StdScanCmd::SetBlockMode() {
  const auto levelDigit = static_cast<std::int8_t>(currentSettings->commandLevelText[1]);
  blockMode_ = levelDigit < kFirstBlockModeLevel ? 0 : 1;
  if (blockMode_ == 0) return 1;
  const std::uint32_t lineRoom = RawLineRoom(areaWidth_, format_);
  const std::uint32_t lines = lineRoom == 0 ? 0 : (receiveSize_ - kDataStart) / lineRoom;
  if (lines == 0) return Fail(kTooLarge);
  SendParam2('d', static_cast<std::uint8_t>(std::min(lines, kMostLinesPerBlock)));
  return 1;
}

// A scanner that reports an error is asked once more; its second header comes with the first block.
std::uint32_t StdScanCmd::StartScanner() {
  headerPending_ = 0;
  startHeader_ = {};
  if (RequestScan() == 0) return 0;
  if (Wire().Read(startHeader_) == 0) return Fail(kTransferFailed);
  if (status::IsSet(Get(startHeader_, block::kStatus), block::kError)) return RequestScan();
  headerPending_ = 1;
  return 1;
}

std::uint32_t StdScanCmd::RequestScan() {
  if (CheckWarmup() == 0) return 0;
  platform::RepaintNow(currentSettings->progressWindow);
  return SendEscCode('G') == 0 ? Fail(kTransferFailed) : 1;
}

// Asks for both names at once, deliberately: no model has to wait.
void StdScanCmd::WaitForModel() {
  const std::uint32_t osKind = currentChannel->GetOpsys();
  if (osKind != kWindows98 && osKind != kNt5) return;
  if (!IsModel("QM43000") || !IsModel("QM41000")) return;
  const ScannerSettings& settings = *currentSettings;
  const std::uint32_t product = std::uint32_t{settings.resolution} * settings.zoom;
  if (settings.scanSource == 0) {
    if (product > 80000) platform::SleepMilliseconds(6000);
  } else if (settings.docFeedOption == kTransparencyUnit && product > 20000) {
    platform::SleepMilliseconds(12000);
  }
}

}  // namespace pmddb832
