#pragma once

#include <sstream>
#include <string>

#include "capture/file/capture_reader.h"

namespace pmscan::tests {

// The capture with these lines behind its first one.
inline capture::Capture CaptureOf(const std::string& lines) {
  std::istringstream text("pmddb832 capture 1\n" + lines);
  return capture::ReadCapture(text, "test");
}

}  // namespace pmscan::tests
