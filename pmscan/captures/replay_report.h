#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "capture/decode/decode_fields.h"
#include "capture/replay/difference.h"
#include "pmscan/report/json_report.h"

namespace pmscan {

// What the module did behind a difference: the first call that failed then, or else the last one.
struct ModuleAnswer {
  std::string call;
  std::vector<capture::FieldRow> results;
  std::optional<std::uint32_t> error;  // what it tells of the failure; nothing when none failed
};

// What a replay came to.
struct ReplaySummary {
  std::uint32_t calls = 0;
  std::size_t transfers = 0;
  std::uint32_t bands = 0;         // whose checksums were compared
  bool isPictureInvented = false;  // zeros stood for image data
  bool endsInCall = false;
  std::size_t differences = 0;
  std::uint32_t lines = 0;   // of the last picture, that the module delivered
  std::uint32_t height = 0;  // of it; 0 when there is none
  std::optional<ModuleAnswer> answer;
};

// A line for each fact.
std::string ReplayText(const ReplaySummary& summary);

Json ReplayJson(const ReplaySummary& summary, const std::vector<capture::Difference>& differences);

// A difference as a paragraph for people: where it is, what was expected, what came, what that
// means. Ends with a line feed.
std::string Describe(const capture::Difference& difference, const std::string& captureFile);

}  // namespace pmscan
