#pragma once

#include <ostream>
#include <string>

#include "capture/file/capture.h"

namespace capture {

// Writes a capture as text (docs/capture-format.md), entry by entry: each is handed to the system
// before Add returns, so that what is there is complete up to a crash of the program.
class CaptureWriter {
 public:
  // Writes the first lines. `remarks` are lines of text that become comments. The stream outlives
  // the writer and throws nothing.
  CaptureWriter(std::ostream& captureStream, const std::string& remarks);

  void Add(const Entry& entry);

  // False once the stream did not take something.
  bool IsGood() const { return out_.good(); }

 private:
  std::ostream& out_;
};

// An entry as lines of text, each with its line feed.
std::string FormatEntry(const Entry& entry);

// The same without indentation of the first line, time and last line feed, for messages.
std::string EntryText(const Entry& entry);

}  // namespace capture
