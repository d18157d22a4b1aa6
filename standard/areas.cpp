#include "interface/scanner_settings.h"
#include "platform/trace.h"
#include "standard/std_scan_cmd.h"
#include "wire/error_codes.h"

namespace pmddb832 {
namespace {

constexpr std::size_t kFlatbedArea = 0;
constexpr std::size_t kOptionArea = 1;
constexpr std::size_t kFeederArea = 2;

}  // namespace

std::uint32_t StdScanCmd::FindOptionUnit() {
  if (GetStatusNoE(replyBuffer_) == 0) return Fail(kUnreadable);
  if (status::IsSet(Get(replyBuffer_, status_reply::kFeeder), status::kInstalled)) {
    areas_[kOptionArea] = areas_[kFeederArea] = FeederArea();
    optionKind_ = kFeeder;
    StoreFeederFlags();
  } else if (status::IsSet(Get(replyBuffer_, status_reply::kTransparency), status::kInstalled)) {
    areas_[kOptionArea] = TransparencyArea();
    optionKind_ = kTransparencyUnit;
  }
  currentSettings->docFeedOption = GetDocFeedOptions();
  return 1;
}

void StdScanCmd::StoreFeederFlags() {
  ScannerSettings& settings = *currentSettings;
  const std::uint8_t main = Get(replyBuffer_, status_reply::kMain);
  const bool variant = status::IsSet(main, status_reply::kFeederVariant);
  const bool second = status::IsSet(main, status_reply::kSecondFeederCapability);
  settings.mainStatusBit5 = variant ? 1 : 0;
  settings.mainStatusBit4 = variant && second ? 1 : 0;
  settings.feederStatusExtra = 0;
}

std::uint32_t StdScanCmd::GetDocFeedOptions() {
  const TraceScope trace{"Scmdnt::GetDocFeedOptions"};
  optionAvailable_ = optionKind_ == kFlatbed ? 0 : 1;
  return optionKind_;
}

void StdScanCmd::StoreAreas() {
  ScannerSettings& settings = *currentSettings;
  const AreaSize bed = GetMaxScan(kFlatbedArea);
  settings.bedWidth = bed.width;
  settings.bedHeight = bed.height;
  settings.areaCount = 1;
  if (settings.docFeedOption == kFlatbed) return;
  const AreaSize option = GetMaxScan(kOptionArea);
  settings.optionWidth = option.width;
  settings.optionHeight = option.height;
  settings.areaCount = 2;
}

// Hundredths of an inch; their low 16 bits.
AreaSize StdScanCmd::GetMaxScan(std::size_t area) {
  const TraceScope trace{"Scmdnt::GetMaxScan"};
  const std::uint32_t resolution = LastResolution();
  return {static_cast<std::uint16_t>(areas_[area].width * 100 / resolution),
          static_cast<std::uint16_t>(areas_[area].height * 100 / resolution)};
}

// The areas of the option units in the status that is in the reply buffer.
AreaSize StdScanCmd::FeederArea() const {
  const std::uint32_t factor = modelQuirk_ != 0 ? 2 : 1;
  return {factor * Get(replyBuffer_, status_reply::kFeederWidth),
          factor * Get(replyBuffer_, status_reply::kFeederHeight)};
}

AreaSize StdScanCmd::TransparencyArea() const {
  const std::uint32_t factor = modelQuirk_ != 0 ? 2 : 1;
  return {factor * Get(replyBuffer_, status_reply::kTransparencyWidth),
          factor * Get(replyBuffer_, status_reply::kTransparencyHeight)};
}

// What the status in the reply buffer says of an option's page, else what is known of its area. A
// feeder's page is the area of later scans.
AreaSize StdScanCmd::PaperSize(std::uint32_t option) {
  const std::uint8_t feeder = Get(replyBuffer_, status_reply::kFeeder);
  if (option == kFeeder && status::IsSet(feeder, status::kErrorSummary)) {
    areas_[kOptionArea] = areas_[kFeederArea] = FeederArea();
    return areas_[kFeederArea];
  }
  const std::uint8_t unit = Get(replyBuffer_, status_reply::kTransparency);
  if (option <= kTransparencyUnit && status::IsSet(unit, status::kErrorSummary)) {
    return TransparencyArea();
  }
  return areas_[option == kFlatbed ? kFlatbedArea : kOptionArea];
}

const AreaSize& StdScanCmd::SelectedArea() const {
  const std::size_t source = currentSettings->scanSource;
  return areas_[source < areas_.size() ? source : kFlatbedArea];
}

// Of a scanner that was identified once: never 0.
std::uint16_t StdScanCmd::LastResolution() const {
  return resolutionList_[resolutionCount_ - 1];
}

bool StdScanCmd::IsFeederSelected() const {
  return currentSettings->scanSource != 0 && optionKind_ == kFeeder;
}

}  // namespace pmddb832
