#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <vector>

#include "capture/file/capture.h"
#include "capture/trace/scanner_endpoints.h"

namespace capture {

// What a trace of a bus tells of a scanner.
struct ImportedTrace {
  // Transfers only: a bus knows nothing of the host's calls. Times count from the first packet of
  // the trace, or as they are where its dates are those of 1970-01-01, as in a converted capture.
  Capture capture;
  UsbAddress scanner;
  // What was left out or changed, and what is missing: sentences with their full stop.
  std::vector<std::string> notes;
};

// Reads a pcap or pcapng file with packets of usbmon (link types 189 and 220) or USBPcap (249).
// Throws TraceError.
ImportedTrace ImportTrace(std::span<const std::uint8_t> file, const DeviceChoice& choice);

}  // namespace capture
