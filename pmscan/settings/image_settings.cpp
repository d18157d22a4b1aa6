#include "pmscan/settings/image_settings.h"

#include <algorithm>

#include "pmscan/command_line/failure.h"
#include "pmscan/command_line/named_rows.h"
#include "pmscan/report/error_codes.h"
#include "pmscan/scan/scan_request.h"
#include "wire/command_level.h"

namespace pmscan {
namespace {

constexpr std::uint16_t kNoThreshold = 0xFFFF;
constexpr std::int32_t kBrightnessStep = 333;
constexpr std::int32_t kSharpnessStep = 500;
// The gamma code that stands for tables; every built-in gamma has another one.
constexpr std::uint8_t kCodeOfTables = 4;

// One refusal: the option, why not, and what helps.
[[noreturn]] void Refuse(const pmddb832::ScannerSettings& settings, const std::string& what,
                         const std::string& whatToDo) {
  const std::string level(settings.commandLevelText);
  throw Failure(kUnsupported, "Scanners of level " + level + " with " +
                                  (IsExtended(settings) ? "extended" : "standard") +
                                  " commands have no " + what + ": " + whatToDo);
}

void RequireHalftone(std::uint8_t row, const pmddb832::ScannerSettings& settings) {
  if (row == 0 || row < settings.halftoneInfo) return;
  std::string names;
  for (const NamedNumber& each : kHalftoneNames) {
    if (each.number >= std::max<std::uint16_t>(settings.halftoneInfo, 1)) continue;
    names.append(names.empty() ? "" : ", ").append(each.name);
  }
  Refuse(settings, "halftone " + std::to_string(row), "--halftone can be " + names + ".");
}

void RequireGammaTables(const ImageSettings& image, const pmddb832::ScannerSettings& settings) {
  if (!image.gammaTables || IsExtended(settings)) return;
  const std::uint8_t tables = pmddb832::TraitsOf(settings.commandLevel).gammaTables;
  if (tables == 0) {
    Refuse(settings, "gamma tables", "choose a gamma with --gamma: " + GammaNames() + ".");
  }
  if (tables == 1 && !image.gammaTables->AreAlike() && image.channel == 0) {
    Refuse(settings, "gamma table for each channel",
           "name a file of 256 numbers with --gamma-table, one table for all.");
  }
}

const GammaTables::Table& TableSentAsRed(const ImageSettings& image) {
  const GammaTables& tables = *image.gammaTables;
  if (image.channel == 2) return tables.green;
  return image.channel == 3 ? tables.blue : tables.red;
}

void DescribeGammaTables(const ImageSettings& image, pmddb832::ScannerSettings& settings) {
  settings.customGamma = image.gammaTables ? 1 : 0;
  settings.customGammaCode = image.gammaTables ? kCodeOfTables : 0;
  if (!image.gammaTables) return;
  // Of one channel only the first table is sent.
  std::copy_n(TableSentAsRed(image).begin(), 256, settings.gammaTableR);
  std::copy_n(image.gammaTables->green.begin(), 256, settings.gammaTableG);
  std::copy_n(image.gammaTables->blue.begin(), 256, settings.gammaTableB);
}

}  // namespace

std::string HalftoneNames() {
  return NamesOf(kHalftoneNames);
}

std::string GammaNames() {
  return NamesOf(kGammas);
}

std::string ChannelNames() {
  return NamesOf(kChannels);
}

void RequireImageSettings(const ImageSettings& image, const pmddb832::ScannerSettings& settings) {
  const bool isExtended = IsExtended(settings);
  const pmddb832::LevelTraits& level = pmddb832::TraitsOf(settings.commandLevel);
  if (image.threshold != 0 && !isExtended && !level.threshold) {
    Refuse(settings, "threshold",
           "leave --threshold out, or lighten and darken the picture with --brightness.");
  }
  RequireHalftone(image.halftone, settings);
  RequireGammaTables(image, settings);
  if (image.sharpness != 0 && !isExtended && !level.status) {
    Refuse(settings, "sharpness", "leave --sharpness out.");
  }
  if (image.colorMatrix && !isExtended && !level.colorMatrix) {
    Refuse(settings, "colour matrix", "leave --color-matrix out.");
  }
  if (image.keepsPaper && settings.mainStatusBit5 == 0) {
    throw Failure(kUnsupported,
                  "This scanner's feeder cannot keep a page: it is thrown out at the end of the "
                  "scan; leave --keep-paper out.");
  }
}

void DescribeImage(const ImageSettings& image, pmddb832::ScannerSettings& settings) {
  settings.thresholdT = image.threshold != 0 ? image.threshold : kNoThreshold;
  settings.halftoneIndex = image.halftone;
  settings.brightness = image.brightness * kBrightnessStep;
  settings.sharpness = image.sharpness * kSharpnessStep;
  settings.gamma = image.gamma;
  DescribeGammaTables(image, settings);
  settings.colorCorrection = image.colorMatrix ? 1 : 0;
  if (image.colorMatrix) std::copy_n(image.colorMatrix->begin(), 9, settings.colorMatrix);
  settings.monoScan = image.channel != 0 ? 1 : 0;
  settings.dropoutChannel = image.channel;
  settings.zoom = image.zoom;
  settings.previewMode = image.isPreview ? 1 : 0;
  settings.keepPaper = image.keepsPaper ? 1 : 0;
}

}  // namespace pmscan
