#include "pmscan/scan/scan_source.h"

#include <string>
#include <vector>

#include "pmscan/command_line/failure.h"
#include "pmscan/command_line/named_rows.h"
#include "pmscan/report/error_codes.h"

namespace pmscan {
namespace {

std::string FittedSources(const pmddb832::ScannerSettings& settings) {
  std::vector<ScanSource> fitted;
  for (const ScanSource& source : kScanSources) {
    if (IsFitted(source, settings)) fitted.push_back(source);
  }
  return NamesOf(fitted);
}

}  // namespace

const ScanSource* FindScanSource(std::string_view name) {
  return FindByName(kScanSources, name);
}

std::string ScanSourceNames() {
  return NamesOf(kScanSources);
}

bool IsFitted(const ScanSource& source, const pmddb832::ScannerSettings& settings) {
  return source.code == pmddb832::kFlatbed || source.code == settings.docFeedOption;
}

BedSize SizeOf(const ScanSource& source, const pmddb832::ScannerSettings& settings) {
  if (source.code == pmddb832::kFlatbed) return {settings.bedWidth, settings.bedHeight};
  return {settings.optionWidth, settings.optionHeight};
}

BedSize RequireFitted(const ScanSource& source, const pmddb832::ScannerSettings& settings) {
  const std::string name(source.description);
  if (!IsFitted(source, settings)) {
    throw Failure(kUnsupported, "This scanner has no " + name +
                                    "; --source can be: " + FittedSources(settings) + ".");
  }
  const BedSize bed = SizeOf(source, settings);
  if (bed.width == 0 || bed.height == 0) {
    throw Failure(kUnsupported, "The scanner did not tell the size of its " + name +
                                    ": say what to scan with --area LEFT,TOP,WIDTH,HEIGHT, or "
                                    "with the name of a paper size.");
  }
  return bed;
}

}  // namespace pmscan
