#pragma once

#include <cstdint>
#include <string_view>

#include "interface/scanner_settings.h"
#include "pmscan/scan/module_exports.h"
#include "pmscan/scan/scan_source.h"

namespace pmscan {

struct Focus {
  bool isAutomatic = true;
  std::int32_t position = 0;  // else: -64 to 155
};

// Reads "auto" or a position. Throws Failure(kUsage).
Focus ParseFocus(std::string_view text);

// What to do about a scanner that cannot focus.
inline constexpr std::string_view kLeaveFocusOut = "leave --focus out";
inline constexpr std::string_view kFocusAnother = "name one that can with --device";

// Throws Failure when the source cannot be focused on: kUnsupported, with the advice, when the
// scanner cannot focus, or the module's code. The source is switched on.
void RequireFocus(const ModuleExports& module, const pmddb832::ScannerSettings& settings,
                  const ScanSource& source, std::string_view advice = kLeaveFocusOut);

// Focuses on the source, which is switched on, and returns the position that the scanner took or
// found. Automatic focus looks at the area of the settings, and takes 20 seconds. Throws Failure as
// RequireFocus does, with the module's code, or with kScannerError when no position was taken or
// found.
std::int32_t SetFocus(const ModuleExports& module, const pmddb832::ScannerSettings& settings,
                      const ScanSource& source, const Focus& focus,
                      std::string_view advice = kLeaveFocusOut);

}  // namespace pmscan
