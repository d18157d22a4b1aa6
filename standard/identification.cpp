#include <algorithm>
#include <new>
#include <utility>

#include "interface/scanner_settings.h"
#include "platform/trace.h"
#include "standard/std_scan_cmd.h"
#include "transport/command_level.h"
#include "transport/device_driver.h"
#include "wire/error_codes.h"
#include "wire/protocol_bytes.h"

namespace pmddb832 {
namespace {

constexpr std::size_t kIndexTableEntries = 8;
constexpr std::uint16_t kStandardSetVariant = 2;
constexpr std::uint32_t kDefaultReceiveSize = 0xFF00;

std::uint32_t CommandLevelCode(char letter, char digit) {
  if (letter == 'A') return digit == '5' ? 4 : 0;
  if (letter != 'B') return 0;
  switch (digit) {
    case '3':
      return 1;
    case '4':
      return 2;
    case '5':
      return 3;
    case '7':
      return 7;
    case '8':
      return 8;
    default:
      return 6;
  }
}

}  // namespace

StdScanCmd::StdScanCmd(std::uint8_t option) : GeneralCmd(option) {
  const TraceScope trace{"Scmdnt::StdScanCmd"};
}

StdScanCmd::~StdScanCmd() {
  const TraceScope trace{"Scmdnt::~StdScanCmd"};
}

std::uint32_t StdScanCmd::Open() {
  const TraceScope trace{"Scmdnt::Open"};
  if (isOpen_ != 0) return 1;
  receiveSize_ = kDefaultReceiveSize;
  receiveBuffer_.reset();
  if (currentChannel == nullptr || currentChannel->Open() == 0) return Fail(kUnreadable);
  // The channel stays open behind a failed identification, deliberately.
  if (GetScanInfo() == 0) return Fail(kIdentificationFailed);
  isOpen_ = 1;
  return 1;
}

void StdScanCmd::Close() {
  const TraceScope trace{"Scmdnt::CLose"};
  if (isOpen_ == 0) return;
  isOpen_ = 0;
  if (currentChannel != nullptr) currentChannel->Close();
  receiveBuffer_.reset();
}

std::uint32_t StdScanCmd::GetLastError() {
  const TraceScope trace{"Scmdnt::GetLastError"};
  const std::uint32_t transportError = Wire().ErrorCode();
  return transportError != 0 ? transportError : lastError_;
}

std::uint32_t StdScanCmd::GetScanInfo() {
  const TraceScope trace{"Scmdnt::GetScanInfo"};
  levelIsA_ = 0;
  if (ResetScanner() == 0) return 0;
  scanActive_ = 0;
  IdentifyModel();
  const auto reply = Inquire('I');
  if (!reply.has_value()) return 0;
  const std::optional<Identity> identity = DecodeIdentity(*reply);
  if (!identity.has_value() || StoreResolutions(*identity) == 0) return 0;
  optionKind_ = kFlatbed;
  optionAvailable_ = 0;
  if (MakeIndexTable() == 0 || StoreCommandLevel(*identity) == 0) return 0;
  if (commandLevel_ > 1 && FindOptionUnit() == 0) return 0;
  IdentifyModel();
  currentSettings->scanSource = 0;
  currentSettings->halftoneInfo = GetHalfTones();
  StoreAreas();
  StoreLevelGroupAndRange(*currentSettings, commandLevel_);
  return 1;
}

// Sends ESC and the letter, and reads the information reply into the reply buffer: its data bytes,
// or nothing when it did not come, did not start with STX or is longer than the buffer.
std::optional<std::span<const std::uint8_t>> StdScanCmd::Inquire(std::uint8_t letter) {
  ReplyHeader header{};
  if (SendEscCode(letter) == 0 || Wire().Read(header) == 0) return std::nullopt;
  if (Get(header, kReplyStx) != kStx) {
    Fail(kUnreadable);
    return std::nullopt;
  }
  const std::uint16_t count = Get(header, kReplyCount);
  if (count > replyBuffer_.size()) return std::nullopt;
  const std::span data = std::span{replyBuffer_}.first(count);
  if (Wire().Read(data) == 0) return std::nullopt;
  return data;
}

// Every area is divided by the last resolution, so that a list that ends with 0 is refused, also
// when it does so because a doubled resolution is beyond 16 bits.
std::uint32_t StdScanCmd::StoreResolutions(const Identity& identity) {
  const std::size_t count = identity.resolutionCount;
  const std::uint16_t last = identity.LastResolution();
  const auto doubled = static_cast<std::uint16_t>(2 * last);
  const bool doubles = modelQuirk_ != 0;
  if ((doubles ? doubled : last) == 0) return 0;
  std::unique_ptr<std::uint16_t[]> list(new (std::nothrow) std::uint16_t[count + 1]{});
  if (list == nullptr) return 0;
  ScannerSettings& settings = *currentSettings;
  settings.minResolution = settings.minResolutionCopy = identity.FirstResolution();
  settings.baseResolution = settings.maxResolutionCopy = last;
  settings.baseResolutionCopy = static_cast<std::uint16_t>(last >> 2);
  settings.scanInfoVariant = kStandardSetVariant;
  std::copy_n(identity.resolutions.begin(), count, list.get());
  areas_[0] = identity.flatbed;
  resolutionCount_ = count;
  if (doubles) {
    list[resolutionCount_++] = doubled;
    settings.baseResolution = doubled;
    areas_[0] = {2 * identity.flatbed.width, 2 * identity.flatbed.height};
  }
  resolutionList_ = std::move(list);
  return 1;
}

std::uint32_t StdScanCmd::MakeIndexTable() {
  indexTable_.reset(new (std::nothrow) std::uint16_t[kIndexTableEntries]{});
  if (indexTable_ == nullptr) return 0;
  for (std::size_t i = 0; i < kIndexTableEntries; ++i) {
    indexTable_[i] = static_cast<std::uint16_t>(i + 1);
  }
  return 1;
}

std::uint32_t StdScanCmd::StoreCommandLevel(const Identity& identity) {
  ScannerSettings& settings = *currentSettings;
  settings.commandLevelText[0] = identity.levelLetter;
  settings.commandLevelText[1] = identity.levelDigit;
  settings.commandLevelText[2] = '\0';
  if (static_cast<std::int8_t>(identity.levelDigit) <= '2') return Fail(kUnsupportedLevel);
  levelIsA_ = identity.levelLetter == 'A' ? 1 : 0;
  commandLevel_ = CommandLevelCode(identity.levelLetter, identity.levelDigit);
  settings.commandLevel = commandLevel_;
  return commandLevel_ == 0 ? Fail(kUnsupportedLevel) : 1;
}

std::uint32_t StdScanCmd::Fail(std::uint32_t code) {
  lastError_ = code;
  return 0;
}

}  // namespace pmddb832
