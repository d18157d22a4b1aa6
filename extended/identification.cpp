#include "transport/identification.h"

#include <algorithm>
#include <new>
#include <string_view>

#include "extended/ext_commands.h"
#include "extended/ext_scan_cmd.h"
#include "interface/scanner_settings.h"
#include "platform/trace.h"
#include "transport/device_driver.h"
#include "transport/model_names.h"
#include "wire/commands.h"
#include "wire/deep_samples.h"
#include "wire/document_source.h"

namespace pmddb832 {
namespace {

constexpr std::size_t kSpareBytes = 6;
constexpr std::uint16_t kExtendedSetVariant = 3;

// Products that are known, deliberately, without a name to report.
constexpr bool IsUnreportedName(std::string_view productName) {
  return productName == "SCANNER RV-5000 " || productName == "Prospectra3100  " ||
         productName == "SCANNER RV-7000 " || productName == "RV-700XL        " ||
         productName == "SCANNER QM-41000";
}

void StoreResolutions(ScannerSettings& settings, const ExtendedIdentity& identity) {
  settings.minResolution = static_cast<std::uint16_t>(identity.minimumResolution * 2);
  settings.minResolutionCopy = settings.minResolution;
  settings.baseResolution = static_cast<std::uint16_t>(identity.basicResolution);
  settings.baseResolutionCopy = settings.baseResolution;
  const auto doubledMaximum = static_cast<std::uint16_t>(identity.maximumResolution);
  settings.maxResolution = static_cast<std::uint16_t>(doubledMaximum >> 1);
  settings.maxResolutionCopy = settings.maxResolution;
}

std::uint32_t StoreCommandLevel(ScannerSettings& settings, const ExtendedIdentity& identity) {
  settings.commandLevelText[0] = identity.levelLetter;
  settings.commandLevelText[1] = identity.levelDigit;
  settings.commandLevelText[2] = '\0';
  settings.commandLevel = ExtendedLevelCode(identity.levelLetter, identity.levelDigit);
  return settings.commandLevel;
}

void StoreFeederFlags(ScannerSettings& settings, std::uint8_t flags) {
  settings.mainStatusBit5 = 0;
  settings.mainStatusBit4 = 0;
  settings.feederStatusExtra = 0;
  if ((flags & identity::kFeederVariant) == 0) return;
  settings.mainStatusBit5 = 1;
  if ((flags & identity::kSecondFeederCapability) != 0) settings.mainStatusBit4 = 1;
  const bool third = (flags & identity::kThirdFeederCapability) != 0;
  if (third || HostModelId(settings) == "RV3100") settings.feederStatusExtra = 1;
}

void StoreAreas(ScannerSettings& settings, const ExtScannerFacts& facts) {
  const std::uint32_t basicResolution = facts.identity.basicResolution;
  settings.bedWidth = facts.flatbed.width * 100 / basicResolution;
  settings.bedHeight = facts.flatbed.height * 100 / basicResolution;
  settings.areaCount = 1;
  if (settings.docFeedOption == kFlatbed) return;
  settings.areaCount = 2;
  settings.optionWidth = facts.option.width * 100 / basicResolution;
  settings.optionHeight = facts.option.height * 100 / basicResolution;
}

// False with an empty name when nobody names the model, or it is not to be named; the facts learn
// its bit depth.
bool GetScannerProductName(ScannerSettings& settings, const IdentityBlock& block,
                           ExtScannerFacts& facts) {
  const TraceScope trace{"Extcmd::GetScannerProductName"};
  const std::string_view productName = StoreProductName(settings, ProductName(block));
  const std::string_view modelId = HostModelId(settings);
  if (const std::string_view listed = ListedModelName(modelId); !listed.empty()) {
    StoreModelName(settings, listed);
    return true;
  }
  if (HasGreatDeepBits(productName)) facts.highBitDepth = kGreatDeepBits;
  const bool unreported = HasGreatDeepBits(productName) || IsUnreportedName(productName);
  StoreModelName(settings, unreported ? std::string_view{} : modelId);
  return !unreported && !modelId.empty();
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
  work_.identity.reset(new (std::nothrow) IdentityBlock{});
  if (work_.identity != nullptr) work_.status.reset(new (std::nothrow) StatusBlock{});
  if (work_.status != nullptr) work_.parameters.reset(new (std::nothrow) ParameterBlock{});
  if (work_.parameters != nullptr) work_.blockInfo.reset(new (std::nothrow) TransferHeader{});
  if (work_.blockInfo != nullptr) return 1;
  work_ = {};
  return 0;
}

std::uint32_t ExtScanCmd::Open(Call& call) {
  const TraceScope trace{"Extcmd::Open"};
  if (opened_) return 1;
  if (call.channel == nullptr || call.channel->Open() == 0) return 0;
  if (BildScannerInfo(call) == 0) {
    spare6_.reset();
    colorOrder_.reset();
    return 0;  // the channel stays open, deliberately
  }
  opened_ = stream_.Open();
  return opened_ ? 1 : 0;
}

void ExtScanCmd::Close(Call& call) {
  const TraceScope trace{"Extcmd::Close"};
  if (!opened_) return;
  opened_ = false;
  spare6_.reset();
  colorOrder_.reset();
  if (call.channel != nullptr) call.channel->Close(call.settings);
  stream_.Close();
}

std::uint32_t ExtScanCmd::GetLastError() {
  const TraceScope trace{"Extcmd::GetLastError"};
  const std::uint32_t transportError = Wire()->ErrorCode();
  return transportError != 0 ? transportError : LastError();
}

std::uint32_t ExtScanCmd::BildScannerInfo(Call& call) {
  const TraceScope trace{"Extcmd::BildScannerInfo"};
  if (ResetScanner(call) == 0 || !ReadIdentity(call)) return 0;
  ScannerSettings& settings = call.settings;
  settings.scanInfoVariant = kExtendedSetVariant;
  spare6_.reset(new (std::nothrow) std::uint8_t[kSpareBytes]{});
  if (spare6_ == nullptr) return 0;
  StoreResolutions(settings, facts_.identity);
  colorOrder_ = MakeIndexTable();
  if (colorOrder_ == nullptr) return 0;
  const LevelTraits& level = TraitsOf(StoreCommandLevel(settings, facts_.identity));
  if (!IsSupported(level)) {
    Fail(kUnsupportedLevel);
    return 0;
  }
  if (level.status && !FindOptionUnit(call)) return 0;
  if (!GetScannerProductName(settings, *work_.identity, facts_)) {
    StoreModelName(settings, kUnknownModelName);
  }
  settings.scanSource = 0;
  settings.halftoneInfo = GetHalfTones(settings);
  StoreAreas(settings, facts_);
  StoreLevelGroupAndRange(settings, level);
  return 1;
}

// A block whose basic resolution is 0 cannot be used, since every area is divided by it: it counts
// as unreadable, and the block that was known before stays.
bool ExtScanCmd::ReadIdentity(Call& call) {
  IdentityBlock block = *work_.identity;  // a short reply leaves the rest as it was
  if (Extcmd::SendFSCode(*this, call, fs::kIdentity) == 0 || Wire()->Read(call, block) == 0) {
    return false;
  }
  const ExtendedIdentity told = DecodeIdentity(block);
  if (told.basicResolution == 0) return Fail(kUnreadable);
  *work_.identity = block;
  facts_.identity = told;
  return true;
}

bool ExtScanCmd::FindOptionUnit(Call& call) {
  if (Extcmd::GetStatusBuffer(*this, call, *work_.status) == 0) return Fail(kUnreadable);
  ScannerSettings& settings = call.settings;
  const ExtendedIdentity& told = facts_.identity;
  settings.docFeedOption = kFlatbed;
  facts_.flatbed = told.flatbed;
  if (status::IsSet(Get(*work_.status, status::kFeeder), status::kInstalled)) {
    settings.docFeedOption = kFeeder;
    facts_.option = told.feeder;
    StoreFeederFlags(settings, told.feederFlags);
  } else if (status::IsSet(Get(*work_.status, status::kTransparency), status::kInstalled)) {
    settings.docFeedOption = kTransparencyUnit;
    facts_.option = told.transparencyUnit;
  }
  return true;
}

}  // namespace pmddb832
