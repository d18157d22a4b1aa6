#pragma once

#include <string>

#include "capture/decode/decode.h"
#include "tests/capture/sample_conversation.h"

namespace pmddb832::tests {

// The decoded conversation, and whether one of its lines, with its margin, is that one.
inline std::string Told(const SampleConversation& sample) {
  return capture::Decode(sample.capture);
}

inline bool HasLine(const std::string& text, const std::string& line) {
  return text.find("\n" + line + "\n") != std::string::npos;
}

}  // namespace pmddb832::tests
