#include "pmscan/scan/session.h"

#include <string>

#include "pmscan/command_line/failure.h"

namespace pmscan {

Session::Session(const ModuleExports& moduleExports, pmddb832::ScannerSettings& scannerSettings)
    : module_(moduleExports), settings_(scannerSettings) {
  // A scanner of the lowest extended level does not say what is fitted, and what stands here stays.
  settings_.docFeedOption = pmddb832::kFlatbed;
  if (module_.openScanner(&settings_) == 0) throw Failure(module_.getScanError());
}

Session::~Session() {
  if (settings_.scanSource != 0) module_.enableOption(0);
  module_.closeScanner();
}

void Session::Select(const ScanSource& source) {
  if (source.code == pmddb832::kFlatbed) return;
  settings_.scanSource = 1;
  if (module_.enableOption(1) != 0) return;
  throw Failure(module_.getScanError(),
                "The scanner did not switch its " + std::string(source.description) + " on.");
}

}  // namespace pmscan
