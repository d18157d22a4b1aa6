#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "capture/file/capture.h"

namespace pmscan {

// A member of the settings record that got another value.
struct ChangedSetting {
  std::string_view member;
  std::string before;  // both as a capture has them; "768 bytes" for what is long
  std::string after;
  bool byModule = false;
  // The call that it belongs to, counted from 0: the one that follows a change by the host, the
  // one under way for one by the module. As many as there are calls where none follows.
  std::size_t call = 0;
};

std::vector<ChangedSetting> ChangedSettingsOf(const capture::Capture& capture);

// Something known of the scanner: a label, and what it is.
struct ScannerFact {
  std::string label;
  std::string value;
};

// What scanner it was, by what the module made of its answers; where no calls were recorded, by the
// answers themselves.
std::vector<ScannerFact> ScannerFactsOf(const capture::Capture& capture);

}  // namespace pmscan
