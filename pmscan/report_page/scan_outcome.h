#pragma once

#include <string>
#include <vector>

#include "capture/decode/decode.h"
#include "pmscan/report_page/captured_pages.h"

namespace pmscan {

// How a captured conversation ended.
struct CapturedOutcome {
  std::string sentence;  // one or two, each with its full stop
  bool isTrouble = false;
};

// Calls and pages are those of the capture.
CapturedOutcome OutcomeOf(const capture::Capture& capture,
                          const std::vector<capture::CallStory>& calls,
                          const std::vector<CapturedPage>& pages);

// What a reader of the report has to know of the capture itself: that it keeps no times, no calls,
// or no bytes of its pictures. A sentence each.
std::vector<std::string> NotesOn(const capture::Capture& capture,
                                 const std::vector<CapturedPage>& pages);

}  // namespace pmscan
