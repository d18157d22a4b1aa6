#pragma once

#include <string>

#include "capture/file/capture.h"

namespace pmscan {

// What decode tells, as JSON: an object on a line of its own for each line that it tells; nothing
// is folded. docs/decode.md describes them.
std::string DecodeJson(const capture::Capture& capture);

}  // namespace pmscan
