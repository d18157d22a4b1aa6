#pragma once

#include <string>

#include "capture/file/capture.h"

namespace capture {

// What a capture tells of the scanner, apart from the calls of the host that it had then.
struct CapturedScanner {
  std::string modelId;  // that the host had of it; empty where the capture tells none
  Capture transfers;    // these alone, with their lines; may be empty
};

CapturedScanner ScannerOf(const Capture& recorded);

}  // namespace capture
