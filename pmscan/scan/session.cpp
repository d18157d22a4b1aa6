#include "pmscan/scan/session.h"

#include <string>

#include "pmscan/command_line/failure.h"

namespace pmscan {

Session::Session(const ModuleExports& moduleExports, pmddb832::ScannerSettings& scannerSettings)
    : module(moduleExports), settings(scannerSettings) {
  // A scanner of the lowest extended level does not say what is fitted, and what stands here stays.
  settings.docFeedOption = kFlatbedOption;
  if (module.openScanner(&settings) == 0) throw Failure(module.getScanError());
}

Session::~Session() {
  if (settings.scanSource != 0) module.enableOption(0);
  module.closeScanner();
}

void Session::Select(const ScanSource& source) {
  if (source.option == kFlatbedOption) return;
  settings.scanSource = 1;
  if (module.enableOption(1) != 0) return;
  throw Failure(module.getScanError(),
                "The scanner did not switch its " + std::string(source.description) + " on.");
}

}  // namespace pmscan
