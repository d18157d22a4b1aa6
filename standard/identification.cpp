#include "transport/identification.h"

#include <algorithm>
#include <new>
#include <optional>
#include <string_view>
#include <utility>

#include "interface/scanner_settings.h"
#include "platform/trace.h"
#include "standard/std_commands.h"
#include "standard/std_scan_cmd.h"
#include "transport/device_driver.h"
#include "transport/model_names.h"
#include "wire/commands.h"
#include "wire/identity_reply.h"

namespace pmddb832 {
namespace {

constexpr std::uint16_t kStandardSetVariant = 2;

// Every area is divided by the last resolution, so that a list that ends with 0 is refused, also
// when it does so because a doubled resolution is beyond 16 bits.
bool StoreResolutions(ScannerSettings& settings, const StandardIdentity& identity,
                      StdScannerFacts& facts) {
  const std::size_t count = identity.resolutionCount;
  const std::uint16_t last = identity.LastResolution();
  const auto doubled = static_cast<std::uint16_t>(2 * last);
  const bool doubles = facts.modelQuirk != 0;
  if ((doubles ? doubled : last) == 0) return false;
  std::unique_ptr<std::uint16_t[]> list(new (std::nothrow) std::uint16_t[count + 1]{});
  if (list == nullptr) return false;
  settings.minResolution = settings.minResolutionCopy = identity.FirstResolution();
  settings.baseResolution = settings.maxResolutionCopy = last;
  settings.baseResolutionCopy = static_cast<std::uint16_t>(last >> 2);
  settings.scanInfoVariant = kStandardSetVariant;
  std::copy_n(identity.resolutions.begin(), count, list.get());
  facts.areas[kFlatbedArea] = identity.flatbed;
  facts.resolutionCount = count;
  if (doubles) {
    list[facts.resolutionCount++] = doubled;
    settings.baseResolution = doubled;
    facts.areas[kFlatbedArea] = {2 * identity.flatbed.width, 2 * identity.flatbed.height};
  }
  facts.resolutionList = std::move(list);
  return true;
}

// False for a level that is not supported; that of a scanner too old for all is not looked at.
bool StoreCommandLevel(ScannerSettings& settings, const StandardIdentity& identity,
                       StdScannerFacts& facts) {
  settings.commandLevelText[0] = identity.levelLetter;
  settings.commandLevelText[1] = identity.levelDigit;
  settings.commandLevelText[2] = '\0';
  if (IsDigitOfOldScanner(identity.levelDigit)) return false;
  facts.level = TraitsOf(StandardLevelCode(identity.levelLetter, identity.levelDigit));
  settings.commandLevel = facts.level.code;
  return IsSupported(facts.level);
}

void StoreFeederFlags(ScannerSettings& settings, std::uint8_t main) {
  const bool variant = status::IsSet(main, status_reply::kFeederVariant);
  const bool second = status::IsSet(main, status_reply::kSecondFeederCapability);
  settings.mainStatusBit5 = variant ? 1 : 0;
  settings.mainStatusBit4 = variant && second ? 1 : 0;
  settings.feederStatusExtra = 0;
}

std::uint32_t GetDocFeedOptions(StdScannerFacts& facts) {
  const TraceScope trace{"Scmdnt::GetDocFeedOptions"};
  facts.optionAvailable = facts.optionKind != kFlatbed;
  return facts.optionKind;
}

// Hundredths of an inch; their low 16 bits.
AreaSize GetMaxScan(const StdScannerFacts& facts, StdArea area) {
  const TraceScope trace{"Scmdnt::GetMaxScan"};
  const std::uint32_t resolution = facts.LastResolution();
  return {static_cast<std::uint16_t>(facts.areas[area].width * 100 / resolution),
          static_cast<std::uint16_t>(facts.areas[area].height * 100 / resolution)};
}

void StoreAreas(ScannerSettings& settings, const StdScannerFacts& facts) {
  const AreaSize bed = GetMaxScan(facts, kFlatbedArea);
  settings.bedWidth = bed.width;
  settings.bedHeight = bed.height;
  settings.areaCount = 1;
  if (settings.docFeedOption == kFlatbed) return;
  const AreaSize option = GetMaxScan(facts, kOptionArea);
  settings.optionWidth = option.width;
  settings.optionHeight = option.height;
  settings.areaCount = 2;
}

}  // namespace

StdScanCmd::StdScanCmd(std::uint8_t option) : GeneralCmd(option) {
  const TraceScope trace{"Scmdnt::StdScanCmd"};
}

StdScanCmd::~StdScanCmd() {
  const TraceScope trace{"Scmdnt::~StdScanCmd"};
}

std::uint32_t StdScanCmd::Open(Call& call) {
  const TraceScope trace{"Scmdnt::Open"};
  if (isOpen_) return 1;
  stream_.Open();
  if (call.channel == nullptr || call.channel->Open() == 0) {
    Fail(kUnreadable);
    return 0;
  }
  isOpen_ = GetScanInfo(call) != 0;
  // The channel stays open behind a failed identification, deliberately.
  if (!isOpen_) Fail(kIdentificationFailed);
  return isOpen_ ? 1 : 0;
}

void StdScanCmd::Close(Call& call) {
  const TraceScope trace{"Scmdnt::CLose"};
  if (!isOpen_) return;
  isOpen_ = false;
  if (call.channel != nullptr) call.channel->Close(call.settings);
  stream_.Close();
}

std::uint32_t StdScanCmd::GetLastError() {
  const TraceScope trace{"Scmdnt::GetLastError"};
  const std::uint32_t transportError = Wire()->ErrorCode();
  return transportError != 0 ? transportError : LastError();
}

std::uint32_t StdScanCmd::GetScanInfo(Call& call) {
  const TraceScope trace{"Scmdnt::GetScanInfo"};
  if (ResetScanner(call) == 0) return 0;
  stream_.End();
  IdentifyModel(call);
  ScannerSettings& settings = call.settings;
  const auto reply = Scmdnt::Inquire(*this, call, esc::kIdentity, replyBuffer_);
  if (!reply.has_value()) return 0;
  const std::optional<StandardIdentity> identity = DecodeIdentity(*reply);
  if (!identity.has_value() || !StoreResolutions(settings, *identity, facts_)) return 0;
  facts_.optionKind = kFlatbed;
  facts_.optionAvailable = false;
  indexTable_ = MakeIndexTable();
  if (indexTable_ == nullptr) return 0;
  if (!StoreCommandLevel(settings, *identity, facts_)) {
    Fail(kUnsupportedLevel);
    return 0;
  }
  if (facts_.level.status && !FindOptionUnit(call)) return 0;
  IdentifyModel(call);
  settings.scanSource = 0;
  settings.halftoneInfo = GetHalfTones(settings);
  StoreAreas(settings, facts_);
  StoreLevelGroupAndRange(settings, facts_.level);
  return 1;
}

bool StdScanCmd::FindOptionUnit(Call& call) {
  if (Scmdnt::GetStatusNoE(*this, call, facts_.level, replyBuffer_) == 0) return Fail(kUnreadable);
  if (status::IsSet(Get(replyBuffer_, status_reply::kFeeder), status::kInstalled)) {
    facts_.areas[kOptionArea] = facts_.areas[kFeederArea] = FeederArea(replyBuffer_, facts_);
    facts_.optionKind = kFeeder;
    StoreFeederFlags(call.settings, Get(replyBuffer_, status_reply::kMain));
  } else if (status::IsSet(Get(replyBuffer_, status_reply::kTransparency), status::kInstalled)) {
    facts_.areas[kOptionArea] = TransparencyArea(replyBuffer_, facts_);
    facts_.optionKind = kTransparencyUnit;
  }
  call.settings.docFeedOption = GetDocFeedOptions(facts_);
  return true;
}

}  // namespace pmddb832
