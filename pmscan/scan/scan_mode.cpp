#include "pmscan/scan/scan_mode.h"

#include <algorithm>
#include <cstring>
#include <utility>

#include "pmscan/command_line/named_rows.h"

namespace pmscan {

namespace {

// "gray" and "color" in a name are other spellings of "grey" and "colour".
std::string InTheUsualSpelling(std::string_view name) {
  std::string usual(name);
  for (const auto& [other, ours] : {std::pair("gray", "grey"), std::pair("color", "colour")}) {
    const auto place = std::search(usual.begin(), usual.end(), other, other + std::strlen(other),
                                   [](char a, char b) {
                                     return IsSameWord({&a, 1}, {&b, 1});
                                   });
    if (place == usual.end()) continue;
    usual.replace(place, place + static_cast<std::ptrdiff_t>(std::strlen(other)), ours);
  }
  return usual;
}

}  // namespace

const ScanMode* FindScanMode(std::string_view name) {
  return FindByName(kScanModes, InTheUsualSpelling(name));
}

std::string ScanModeNames() {
  return NamesOf(kScanModes);
}

}  // namespace pmscan
