#include <algorithm>
#include <new>
#include <string_view>

#include "extended/ext_scan_cmd.h"
#include "interface/scanner_settings.h"
#include "platform/trace.h"
#include "transport/command_level.h"
#include "transport/device_driver.h"
#include "transport/model_names.h"
#include "wire/document_source.h"
#include "wire/error_codes.h"

namespace pmddb832 {
namespace {

constexpr std::size_t kColorOrderEntries = 8;
constexpr std::size_t kSpareBytes = 6;
constexpr std::uint16_t kExtendedSetVariant = 3;

std::uint32_t CommandLevelCode(char letter, char digit) {
  if (letter != 'B') return 0;
  switch (digit) {
    case '3':
      return 1;
    case '4':
      return 2;
    case '5':
      return 3;
    case '6':
      return 6;
    case '7':
      return 7;
    case '8':
      return 8;
    default:
      return 0;
  }
}

// Names that have an entry of their own but are never reported: the entry counts for its bit depth
// only.
constexpr bool IsUnreportedName(std::string_view productName) {
  return productName == "SCANNER RV-5000 " || productName == "Prospectra3100  " ||
         productName == "SCANNER RV-7000 " || productName == "RV-700XL        " ||
         productName == "SCANNER QM-41000";
}

constexpr bool Has14Bits(std::string_view productName) {
  return productName == "SCANNER RV-3100 " || productName == "Prospectra3140XL";
}

}  // namespace

ExtScanCmd::ExtScanCmd(std::uint8_t option) : GeneralCmd(option) {
  const TraceScope trace{"Extcmd::ExtScanCmd"};
}

ExtScanCmd::~ExtScanCmd() {
  const TraceScope trace{"Extcmd::~ExtScanCmd"};
}

std::uint32_t ExtScanCmd::InitWorkArea() {
  const TraceScope trace{"Extcmd::InitWorkArea"};
  identity_.reset(new (std::nothrow) IdentityBlock{});
  if (identity_ != nullptr) status_.reset(new (std::nothrow) StatusBlock{});
  if (status_ != nullptr) parameters_.reset(new (std::nothrow) ParameterBlock{});
  if (parameters_ != nullptr) blockInfo_.reset(new (std::nothrow) TransferHeader{});
  if (blockInfo_ != nullptr) return 1;
  identity_.reset();
  status_.reset();
  parameters_.reset();
  return 0;
}

std::uint32_t ExtScanCmd::Open() {
  const TraceScope trace{"Extcmd::Open"};
  if (opened_ != 0) return 1;
  dataBufferSize_ = kDataBufferBytes;
  dataBuffer_.reset();
  if (currentChannel == nullptr || currentChannel->Open() == 0) return 0;
  if (BildScannerInfo() == 0) {
    spare6_.reset();
    colorOrder_.reset();
    return 0;  // the channel stays open, deliberately
  }
  dataBuffer_ = platform::MakeHeapBlock(dataBufferSize_);
  if (dataBuffer_ == nullptr) return 0;
  opened_ = 1;
  return 1;
}

void ExtScanCmd::Close() {
  const TraceScope trace{"Extcmd::Close"};
  if (opened_ == 0) return;
  opened_ = 0;
  spare6_.reset();
  colorOrder_.reset();
  if (currentChannel != nullptr) currentChannel->Close();
  dataBuffer_.reset();
}

std::uint32_t ExtScanCmd::GetLastError() {
  const TraceScope trace{"Extcmd::GetLastError"};
  const std::uint32_t transportError = Wire().ErrorCode();
  return transportError != 0 ? transportError : errorCode_;
}

std::uint32_t ExtScanCmd::BildScannerInfo() {
  const TraceScope trace{"Extcmd::BildScannerInfo"};
  if (ResetScanner() == 0 || ReadIdentity() == 0) return 0;
  ScannerSettings& settings = *currentSettings;
  settings.scanInfoVariant = kExtendedSetVariant;
  spare6_.reset(new (std::nothrow) std::uint8_t[kSpareBytes]{});
  if (spare6_ == nullptr) return 0;
  settings.minResolution =
      static_cast<std::uint16_t>(Get(*identity_, identity::kMinimumResolutionLow) * 2);
  settings.minResolutionCopy = settings.minResolution;
  settings.baseResolution = Get(*identity_, identity::kBasicResolutionLow);
  settings.baseResolutionCopy = settings.baseResolution;
  settings.maxResolution =
      static_cast<std::uint16_t>(Get(*identity_, identity::kMaximumResolutionLow) >> 1);
  settings.maxResolutionCopy = settings.maxResolution;
  if (AllocateColorOrder() == 0 || StoreCommandLevel() == 0) return 0;
  if (settings.commandLevel > 1 && StoreOptionUnit() == 0) return 0;
  if (GetScannerProductName() == 0) StoreModelName(kUnknownModelName);
  settings.scanSource = 0;
  settings.halftoneInfo = GetHalfTones();
  StoreAreas();
  StoreLevelGroupAndRange(settings, settings.commandLevel);
  return 1;
}

// A block whose basic resolution is 0 cannot be used, since every area is divided by it: it counts
// as unreadable, and the block that was known before stays.
std::uint32_t ExtScanCmd::ReadIdentity() {
  IdentityBlock block = *identity_;  // a short reply leaves the rest as it was
  if (SendFSCode('I') == 0 || Wire().Read(block) == 0) return 0;
  if (Get(block, identity::kBasicResolution) == 0) return Fail(kUnreadable);
  *identity_ = block;
  return 1;
}

std::uint32_t ExtScanCmd::AllocateColorOrder() {
  colorOrder_.reset(new (std::nothrow) std::uint16_t[kColorOrderEntries]{});
  if (colorOrder_ == nullptr) return 0;
  for (std::size_t i = 0; i < kColorOrderEntries; ++i) {
    colorOrder_[i] = static_cast<std::uint16_t>(i + 1);
  }
  return 1;
}

std::uint32_t ExtScanCmd::StoreCommandLevel() {
  ScannerSettings& settings = *currentSettings;
  settings.commandLevelText[0] = static_cast<char>(Get(*identity_, identity::kLevelLetter));
  settings.commandLevelText[1] = static_cast<char>(Get(*identity_, identity::kLevelDigit));
  settings.commandLevelText[2] = '\0';
  settings.commandLevel =
      CommandLevelCode(settings.commandLevelText[0], settings.commandLevelText[1]);
  return settings.commandLevel == 0 ? Fail(kUnsupportedLevel) : 1;
}

std::uint32_t ExtScanCmd::StoreOptionUnit() {
  if (GetStatusBuffer(*status_) == 0) return Fail(kUnreadable);
  ScannerSettings& settings = *currentSettings;
  settings.docFeedOption = kFlatbed;
  flatbed_ = {Get(*identity_, identity::kFlatbedWidth), Get(*identity_, identity::kFlatbedHeight)};
  if ((Get(*status_, status::kFeeder) & status::kInstalled) != 0) {
    settings.docFeedOption = kFeeder;
    TakeFeederArea();
    StoreFeederFlags();
  } else if ((Get(*status_, status::kTransparency) & status::kInstalled) != 0) {
    settings.docFeedOption = kTransparencyUnit;
    option_ = {Get(*identity_, identity::kTransparencyWidth),
               Get(*identity_, identity::kTransparencyHeight)};
    optionCopy_ = option_;
  }
  return 1;
}

void ExtScanCmd::StoreFeederFlags() {
  ScannerSettings& settings = *currentSettings;
  settings.mainStatusBit5 = 0;
  settings.mainStatusBit4 = 0;
  settings.feederStatusExtra = 0;
  const std::uint8_t flags = Get(*identity_, identity::kFeederFlags);
  if ((flags & identity::kFeederVariant) == 0) return;
  settings.mainStatusBit5 = 1;
  if ((flags & identity::kSecondFeederCapability) != 0) settings.mainStatusBit4 = 1;
  const bool third = (flags & identity::kThirdFeederCapability) != 0;
  if (third || HostModelId() == "RV3100") settings.feederStatusExtra = 1;
}

void ExtScanCmd::StoreAreas() {
  const std::uint32_t basicResolution = Get(*identity_, identity::kBasicResolution);
  ScannerSettings& settings = *currentSettings;
  settings.bedWidth = flatbed_.width * 100 / basicResolution;
  settings.bedHeight = flatbed_.height * 100 / basicResolution;
  settings.areaCount = 1;
  if (settings.docFeedOption == kFlatbed) return;
  settings.areaCount = 2;
  settings.optionWidth = option_.width * 100 / basicResolution;
  settings.optionHeight = option_.height * 100 / basicResolution;
}

std::uint32_t ExtScanCmd::GetScannerProductName() {
  const TraceScope trace{"Extcmd::GetScannerProductName"};
  const std::string_view productName = StoreProductName(
      std::span{*identity_}.subspan<identity::kProductNameOffset, identity::kProductNameBytes>());
  const std::string_view modelId = HostModelId();
  if (const std::string_view listed = ListedModelName(modelId); !listed.empty()) {
    StoreModelName(listed);
    return 1;
  }
  if (Has14Bits(productName)) highBitDepth_ = 14;
  const bool unreported = Has14Bits(productName) || IsUnreportedName(productName);
  StoreModelName(unreported ? std::string_view{} : modelId);
  return unreported || modelId.empty() ? 0 : 1;
}

std::uint32_t ExtScanCmd::Fail(std::uint32_t code) {
  errorCode_ = code;
  return 0;
}

}  // namespace pmddb832
