#include "pmscan/report/scanner_facts.h"

#include <algorithm>
#include <string_view>

#include "pmscan/scan/scan_request.h"

namespace pmscan {
namespace {

// What the module writes when it does not know the model.
constexpr std::string_view kNoModel = "ORVAN";

// The text of a zero-terminated, blank-padded field.
template <std::size_t size>
std::string FieldText(const char (&field)[size]) {
  std::string text(field, std::find(field, field + size, '\0'));
  text.erase(text.find_last_not_of(' ') + 1);
  return text;
}

SourceFacts AskSource(const ModuleExports& module, pmddb832::ScannerSettings& settings,
                      const ScanSource& source) {
  SourceFacts facts;
  facts.source = source;
  facts.isFitted = IsFitted(source, settings);
  if (!facts.isFitted) return facts;
  facts.size = SizeOf(source, settings);
  settings.scanSource = source.code == pmddb832::kFlatbed ? 0 : 1;
  std::uint32_t width = 0;
  std::uint32_t height = 0;
  if (module.getScanPaperSize(source.code, &width, &height) == 0) {
    facts.widthPixels = width;
    facts.heightPixels = height;
  }
  settings.scanSource = 0;
  facts.status = module.getOptionStatus(source.code);
  return facts;
}

}  // namespace

ScannerFacts ReadFacts(const pmddb832::ScannerSettings& settings) {
  ScannerFacts facts;
  facts.model = FieldText(settings.modelName);
  if (facts.model == kNoModel) facts.model.clear();
  facts.product = FieldText(settings.productNameReply);
  facts.level = FieldText(settings.commandLevelText);
  facts.isExtended = IsExtended(settings);
  facts.lowestResolution = settings.minResolutionCopy;
  facts.highestResolution = settings.maxResolutionCopy;
  facts.basicResolution = settings.baseResolution;
  facts.halftones = settings.halftoneInfo;
  return facts;
}

ScannerFacts AskScanner(const ModuleExports& module, pmddb832::ScannerSettings& settings) {
  ScannerFacts facts = ReadFacts(settings);
  for (const ScanSource& source : kScanSources) {
    facts.sources.push_back(AskSource(module, settings, source));
  }
  return facts;
}

}  // namespace pmscan
