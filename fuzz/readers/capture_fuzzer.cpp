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

std::string Written(const capture::Capture& read) {
  std::ostringstream text;
  capture::CaptureWriter writer(text, "");
  for (const capture::Entry& entry : read.entries) writer.Add(entry);
  return text.str();
}

void Use(const capture::Capture& read) {
  capture::Decode(read);
  const std::string text = Written(read);
  const capture::Capture again = Read(text);
  if (Written(again) != text || capture::ToPcapng(again) != capture::ToPcapng(read)) std::abort();
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
