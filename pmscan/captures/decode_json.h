#pragma once

#include <string>

#include "capture/file/capture.h"
#include "pmscan/command_line/failure.h"

namespace pmscan {

// What decode tells, as JSON: an object on a line of its own for each line that it tells; nothing
// is folded. docs/decode.md describes them.
std::string DecodeJson(const capture::Capture& capture);

// The only line of one that failed: an object with `error` and `exitCode`.
std::string DecodeFailureJson(const Failure& failure);

}  // namespace pmscan
