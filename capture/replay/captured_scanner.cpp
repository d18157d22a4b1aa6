#include "capture/replay/captured_scanner.h"

#include <string_view>

#include "capture/file/settings_text.h"
#include "interface/scanner_settings.h"

namespace capture {

CapturedScanner ScannerOf(const Capture& recorded) {
  CapturedScanner scanner;
  pmddb832::ScannerSettings settings{};
  for (std::size_t i = 0; i < recorded.entries.size(); ++i) {
    const Entry& entry = recorded.entries[i];
    const auto* const change = std::get_if<SettingsChange>(&entry);
    if (change != nullptr && !change->byModule) Apply(*change, settings);
    if (!std::holds_alternative<Transfer>(entry)) continue;
    scanner.transfers.entries.push_back(entry);
    scanner.transfers.lines.push_back(LineOf(recorded, i));
  }
  const std::string_view id(settings.modelId, sizeof(settings.modelId));
  scanner.modelId = id.substr(0, id.find('\0'));
  return scanner;
}

}  // namespace capture
