// Any bytes at all as a trace of a bus. What is imported is told, reads the same from its text, and
// is the same again when it is converted and imported.

#include <cstdlib>
#include <sstream>

#include "capture/decode/decode.h"
#include "capture/file/capture_reader.h"
#include "capture/file/capture_writer.h"
#include "capture/pcapng/pcapng_writer.h"
#include "capture/trace/trace_import.h"
#include "capture/trace/trace_packets.h"

namespace {

void Require(bool isSo) {
  if (!isSo) std::abort();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  capture::Capture imported;
  try {
    imported = capture::ImportTrace({data, size}, {}).capture;
  } catch (const capture::TraceError&) {
    return 0;
  }
  Require(!capture::Decode(imported).empty());
  std::stringstream text;
  capture::CaptureWriter writer(text, "");
  for (const capture::Entry& entry : imported.entries) writer.Add(entry);
  Require(capture::ReadCapture(text, "fuzz").entries == imported.entries);
  if (imported.entries.empty()) return 0;
  const capture::DeviceChoice converted{.bus = 1, .device = 1};
  const std::vector<std::uint8_t> file = capture::ToPcapng(imported);
  Require(capture::ImportTrace(file, converted).capture.entries == imported.entries);
  return 0;
}
