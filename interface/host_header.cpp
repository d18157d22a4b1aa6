// Holds the header for hosts, which is written for C, against the module's own headers. Compiled in
// every build, linked into nothing.

#include <array>
#include <cstddef>
#include <tuple>
#include <type_traits>

#include "interface/exports.h"

// clang-format off
#define FUNCTION_TYPES \
  decltype(&PMOpenScanner), \
  decltype(&PMSetScannerHardware), \
  decltype(&PMInitAcquire), \
  decltype(&PMAcquireImage), \
  decltype(&PMAbortScan), \
  decltype(&PMCloseScanner), \
  decltype(&PMGetOptionStatus), \
  decltype(&PMEject), \
  decltype(&PMFeed), \
  decltype(&PMReset), \
  decltype(&PMSetFocus), \
  decltype(&PMEnableOption), \
  decltype(&PMGetScanPaperSize), \
  decltype(&PMGetScanError)

using ModuleFunctions = std::tuple<FUNCTION_TYPES>;

// A function for C is known by its name alone, so those of the header get others here.
#define PMOpenScanner HostOpenScanner
#define PMSetScannerHardware HostSetScannerHardware
#define PMInitAcquire HostInitAcquire
#define PMAcquireImage HostAcquireImage
#define PMAbortScan HostAbortScan
#define PMCloseScanner HostCloseScanner
#define PMGetOptionStatus HostGetOptionStatus
#define PMEject HostEject
#define PMFeed HostFeed
#define PMReset HostReset
#define PMSetFocus HostSetFocus
#define PMEnableOption HostEnableOption
#define PMGetScanPaperSize HostGetScanPaperSize
#define PMGetScanError HostGetScanError
#include <pmddb832.h>
// clang-format on

namespace {

using HostFunctions = std::tuple<FUNCTION_TYPES>;
using pmddb832::AcquisitionBand;
using pmddb832::AcquisitionSetup;
using pmddb832::ScannerSettings;
using pmddb832::SettingsField;

// What the module calls a type of the header.
template <class Host>
struct AsModule {
  using Type = Host;
};
template <>
struct AsModule<IStiDevice*> {
  using Type = pmddb832::StillImageDevice*;
};
template <>
struct AsModule<PMScannerSettings*> {
  using Type = ScannerSettings*;
};
template <>
struct AsModule<PMAcquisitionSetup*> {
  using Type = AcquisitionSetup*;
};
template <>
struct AsModule<PMAcquisitionBand*> {
  using Type = AcquisitionBand*;
};
template <class Result, class... Parameter>
struct AsModule<Result (*)(Parameter...)> {
  using Type = Result (*)(typename AsModule<Parameter>::Type...);
};
template <class... Function>
struct AsModule<std::tuple<Function...>> {
  using Type = std::tuple<typename AsModule<Function>::Type...>;
};

static_assert(std::is_same_v<AsModule<HostFunctions>::Type, ModuleFunctions>);

#define IS_SAME(record, member)                                \
  (offsetof(PM##record, member) == offsetof(record, member) && \
   std::is_same_v<AsModule<decltype(PM##record::member)>::Type, decltype(record::member)>)

#define HOST_FIELD(member)                                                           \
  SettingsField {                                                                    \
#member, offsetof(PMScannerSettings, member), sizeof(PMScannerSettings::member), \
        IS_SAME(ScannerSettings, member)                                             \
  }

// The members of the header's record that are not reserved, in their order.
// clang-format off
constexpr std::array kHostFields{
    HOST_FIELD(commandLevel),
    HOST_FIELD(commandLevelText),
    HOST_FIELD(modelName),
    HOST_FIELD(docFeedOption),
    HOST_FIELD(areaCount),
    HOST_FIELD(bedWidth),
    HOST_FIELD(bedHeight),
    HOST_FIELD(optionWidth),
    HOST_FIELD(optionHeight),
    HOST_FIELD(levelGroup),
    HOST_FIELD(halftoneInfo),
    HOST_FIELD(minResolution),
    HOST_FIELD(baseResolution),
    HOST_FIELD(maxResolution),
    HOST_FIELD(scanInfoVariant),
    HOST_FIELD(dropoutChannel),
    HOST_FIELD(pixelType),
    HOST_FIELD(zoom),
    HOST_FIELD(resolution),
    HOST_FIELD(originX),
    HOST_FIELD(originY),
    HOST_FIELD(invertMono),
    HOST_FIELD(brightness),
    HOST_FIELD(halftoneIndex),
    HOST_FIELD(sharpness),
    HOST_FIELD(gamma),
    HOST_FIELD(paramG),
    HOST_FIELD(altColorMode),
    HOST_FIELD(whitePadding),
    HOST_FIELD(scanSource),
    HOST_FIELD(customGamma),
    HOST_FIELD(colorCorrection),
    HOST_FIELD(halftoneOverride),
    HOST_FIELD(optionS),
    HOST_FIELD(mirrorImage),
    HOST_FIELD(keepPaper),
    HOST_FIELD(previewMode),
    HOST_FIELD(monoScan),
    HOST_FIELD(gammaTableB),
    HOST_FIELD(gammaTableG),
    HOST_FIELD(gammaTableR),
    HOST_FIELD(colorMatrix),
    HOST_FIELD(optionParam),
    HOST_FIELD(mainStatusBit5),
    HOST_FIELD(mainStatusBit4),
    HOST_FIELD(rangeEnabled),
    HOST_FIELD(rangeMin),
    HOST_FIELD(rangeMax),
    HOST_FIELD(areaWidthPx),
    HOST_FIELD(areaHeightPx),
    HOST_FIELD(areaLeftPx),
    HOST_FIELD(areaTopPx),
    HOST_FIELD(thresholdT),
    HOST_FIELD(customGammaCode),
    HOST_FIELD(progressWindow),
    HOST_FIELD(productNameReply),
    HOST_FIELD(modelId),
    HOST_FIELD(deviceInterface),
    HOST_FIELD(useDeviceInterface),
    HOST_FIELD(maxResolutionCopy),
    HOST_FIELD(minResolutionCopy),
    HOST_FIELD(baseResolutionCopy),
    HOST_FIELD(feederStatusExtra),
};
// clang-format on

constexpr bool HasEveryMember() {
  const auto* host = kHostFields.begin();
  for (const SettingsField& field : pmddb832::kScannerSettingsFields) {
    if (field.name.starts_with("reserved")) continue;
    if (host == kHostFields.end() || !host->matchesRecord || host->name != field.name) return false;
    if (host->offset != field.offset || host->width != field.width) return false;
    ++host;
  }
  return host == kHostFields.end();
}

static_assert(HasEveryMember());
static_assert(sizeof(PMScannerSettings) == sizeof(ScannerSettings));
static_assert(PM_THRESHOLD_UNSET == pmddb832::kThresholdUnset);

static_assert(IS_SAME(AcquisitionSetup, status));
static_assert(IS_SAME(AcquisitionSetup, lineBytes));
static_assert(IS_SAME(AcquisitionSetup, widthPixels));
static_assert(IS_SAME(AcquisitionSetup, heightLines));
static_assert(IS_SAME(AcquisitionBand, status));
static_assert(IS_SAME(AcquisitionBand, done));
static_assert(IS_SAME(AcquisitionBand, lines));
static_assert(IS_SAME(AcquisitionBand, bytes));
static_assert(sizeof(PMAcquisitionSetup) == sizeof(AcquisitionSetup));
static_assert(sizeof(PMAcquisitionBand) == sizeof(AcquisitionBand));
static_assert(PMAcquisitionGoOn == std::uint32_t{pmddb832::kAcquisitionGoOn});
static_assert(PMAcquisitionFailed == std::uint32_t{pmddb832::kAcquisitionFailed});
static_assert(PMAcquisitionFreshBuffer == std::uint32_t{pmddb832::kAcquisitionFreshBuffer});

}  // namespace
