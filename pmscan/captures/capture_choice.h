#pragma once

#include <string>

namespace pmscan {

// Where a capture goes, and what is in it.
struct CaptureChoice {
  std::string file;             // in UTF-8
  bool keepsImageData = false;  // not only length and checksum
};

}  // namespace pmscan
