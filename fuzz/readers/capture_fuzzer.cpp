// Any text as a capture: read, told, made into pcapng, and written again, which reads as the same.

#include <cstdlib>
#include <sstream>

#include "capture/decode/decode.h"
#include "capture/file/capture_reader.h"
#include "capture/file/capture_writer.h"
#include "capture/pcapng/pcapng_writer.h"

namespace {

capture::Capture Read(const std::string& text) {
  std::istringstream stream(text);
  return capture::ReadCapture(stream, "input");
}

void Use(const capture::Capture& read) {
  const std::string told = capture::Decode(read);
  const std::vector<std::uint8_t> packets = capture::ToPcapng(read);
  std::ostringstream written;
  capture::CaptureWriter writer(written, "");
  for (const capture::Entry& entry : read.entries) writer.Add(entry);
  const capture::Capture again = Read(written.str());
  if (capture::Decode(again) != told || capture::ToPcapng(again) != packets) std::abort();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  capture::Capture read;
  try {
    read = Read({reinterpret_cast<const char*>(data), size});
  } catch (const capture::FormatError&) {
    return 0;
  }
  Use(read);
  return 0;
}
