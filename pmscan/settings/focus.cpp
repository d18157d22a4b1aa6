#include "pmscan/settings/focus.h"

#include <charconv>
#include <string>

#include "pmscan/command_line/failure.h"
#include "pmscan/report/error_codes.h"
#include "wire/command_level.h"

namespace pmscan {
namespace {

constexpr std::int32_t kNearest = -64;
constexpr std::int32_t kFarthest = 155;
constexpr std::uint8_t kNoPosition = 156;  // what the module answers then

// The module has positions of 8 bits, those below 0 at their end.
std::int32_t PositionOf(std::uint8_t answer) {
  return answer >= 256 + kNearest ? answer - 256 : answer;
}

}  // namespace

Focus ParseFocus(std::string_view text) {
  if (text == "auto") return {};
  Focus focus{.isAutomatic = false};
  const char* const end = text.data() + text.size();
  const auto [rest, error] = std::from_chars(text.data(), end, focus.position);
  const bool isInRange = focus.position >= kNearest && focus.position <= kFarthest;
  if (error == std::errc() && rest == end && isInRange) return focus;
  throw Failure(kUsage, "There is no focus \"" + std::string(text) +
                            "\"; --focus can be auto or a position from -64 to 155.");
}

void RequireFocus(const ModuleExports& module, const pmddb832::ScannerSettings& settings,
                  const ScanSource& source, std::string_view advice) {
  if (!pmddb832::TraitsOf(settings.commandLevel).focus) {
    throw Failure(kUnsupported, "Only scanners of level B8 can focus, and this one has level " +
                                    std::string(settings.commandLevelText) + ": " +
                                    std::string(advice) + ".");
  }
  const std::uint32_t status = module.getOptionStatus(source.code);
  if (status != 0) throw Failure(status);
}

std::int32_t SetFocus(const ModuleExports& module, const pmddb832::ScannerSettings& settings,
                      const ScanSource& source, const Focus& focus, std::string_view advice) {
  RequireFocus(module, settings, source, advice);
  const std::uint8_t answer =
      module.setFocus(focus.isAutomatic ? 1 : 0, static_cast<std::uint8_t>(focus.position));
  const std::uint32_t error = module.getScanError();
  if (error != 0) throw Failure(error, "The scanner did not focus.");
  if (answer != kNoPosition) return PositionOf(answer);
  throw Failure(kScannerError, focus.isAutomatic ? "Automatic focus found no position."
                                                 : "The scanner did not take the position.");
}

}  // namespace pmscan
