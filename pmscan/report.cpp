#include "pmscan/report.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <string_view>

#include "pmscan/error_codes.h"

namespace pmscan {
namespace {

// What the module writes when it does not know the model.
constexpr std::string_view kNoModel = "ORVAN";

void AddLine(std::string& text, std::string_view label, std::string_view value) {
  std::string line(label);
  line.resize(std::max<std::size_t>(line.size(), 13), ' ');
  text.append(line).append(value).append("\n");
}

// The text of a zero-terminated, blank-padded field.
template <std::size_t size>
std::string FieldText(const char (&field)[size]) {
  std::string text(field, std::find(field, field + size, '\0'));
  text.erase(text.find_last_not_of(' ') + 1);
  return text;
}

std::string LevelText(const pmddb832::ScannerSettings& settings) {
  const bool isExtended = settings.scanInfoVariant == 3;
  return FieldText(settings.commandLevelText) +
         (isExtended ? ", extended commands" : ", standard commands");
}

std::string PixelSizeText(std::uint32_t width, std::uint32_t height) {
  return std::to_string(width) + " x " + std::to_string(height);
}

std::string StatusText(std::uint32_t status) {
  if (status == 0) return "ready";
  return std::to_string(status) + ": " + std::string(FindErrorCode(status).meaning);
}

std::string ResolutionText(const pmddb832::ScannerSettings& settings) {
  return std::to_string(settings.minResolutionCopy) + " to " +
         std::to_string(settings.maxResolutionCopy) + " dpi, basic " +
         std::to_string(settings.baseResolution) + " dpi";
}

std::string SourceText(const ModuleExports& module, pmddb832::ScannerSettings& settings,
                       const ScanSource& source) {
  if (!IsFitted(source, settings)) return "not fitted";
  const bool isFlatbed = source.option == kFlatbedOption;
  const BedSize bed{isFlatbed ? settings.bedWidth : settings.optionWidth,
                    isFlatbed ? settings.bedHeight : settings.optionHeight};
  std::string text = bed.width == 0 ? "size not told" : FormatBedSize(bed);
  std::uint32_t width = 0;
  std::uint32_t height = 0;
  settings.scanSource = isFlatbed ? 0 : 1;
  if (module.getScanPaperSize(source.option, &width, &height) == 0 && width > 0) {
    text += ", " + PixelSizeText(width, height) + " pixels at the highest resolution";
  }
  settings.scanSource = 0;
  return text + "; " + StatusText(module.getOptionStatus(source.option));
}

}  // namespace

std::string ModelText(const pmddb832::ScannerSettings& settings) {
  const std::string model = FieldText(settings.modelName);
  const std::string product = FieldText(settings.productNameReply);
  if (model.empty() || model == kNoModel) return product.empty() ? "unknown" : product;
  return product.empty() ? model : model + " (" + product + ")";
}

std::string ScanReport(const pmddb832::ScannerSettings& settings, const ScanSource& source,
                       const ScanRequest& request, const ScanOutcome& outcome) {
  const double dotsPerInch = request.dotsPerInch;
  std::array<char, 40> seconds{};
  std::snprintf(seconds.data(), seconds.size(), "%.1f s", outcome.seconds);
  std::string text;
  AddLine(text, "Model", ModelText(settings));
  AddLine(text, "Level", LevelText(settings));
  AddLine(text, "Source", source.description);
  AddLine(text, "Mode", request.mode.description);
  AddLine(text, "Resolution", std::to_string(request.dotsPerInch) + " dpi");
  AddLine(text, "Pixels", PixelSizeText(request.area.width, request.area.height));
  AddLine(text, "Size",
          FormatSize(request.area.width / dotsPerInch, request.area.height / dotsPerInch));
  AddLine(text, "File",
          outcome.file + ", " + outcome.formatName + ", " + std::to_string(outcome.fileBytes) +
              " bytes");
  AddLine(text, "Time", seconds.data());
  return text;
}

std::string ScannerReport(const ModuleExports& module, pmddb832::ScannerSettings& settings) {
  std::string text;
  AddLine(text, "Model", ModelText(settings));
  AddLine(text, "Product", FieldText(settings.productNameReply));
  AddLine(text, "Level", LevelText(settings));
  AddLine(text, "Resolutions", ResolutionText(settings));
  AddLine(text, "Halftones", std::to_string(settings.halftoneInfo));
  for (const ScanSource& source : kScanSources) {
    std::string label(source.name);
    label[0] = static_cast<char>(label[0] - 'a' + 'A');
    AddLine(text, label, SourceText(module, settings, source));
  }
  return text;
}

}  // namespace pmscan
