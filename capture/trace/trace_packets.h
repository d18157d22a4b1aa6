#pragma once

#include <cstdint>
#include <span>
#include <stdexcept>
#include <string>
#include <vector>

#include "capture/trace/trace_bytes.h"

namespace capture {

// A trace that cannot be used. what() says what was expected, what came and what to do.
class TraceError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

// A packet of a trace.
struct TracePacket {
  std::uint16_t linkType = 0;
  std::uint64_t microseconds = 0;  // of the trace's own clock
  TraceBytes bytes;                // what was kept, in the byte order of its section
  std::string comment;
  bool isWholeTransfer = false;  // from an interface of converted captures
};

struct PacketTrace {
  std::vector<TracePacket> packets;
  std::uint64_t lost = 0;  // packets, as far as the trace tells
  bool isCut = false;      // what stands behind the last packet is none
};

// The packets of a pcap or pcapng file, of either byte order and any resolution of time. The file
// outlives them. Throws TraceError for a file that is neither; of one that is damaged there is what
// stands in front of that.
PacketTrace ReadPackets(std::span<const std::uint8_t> file);

// The two kinds of file, known by their first bytes.
PacketTrace ReadPcap(std::span<const std::uint8_t> file);
PacketTrace ReadPcapng(std::span<const std::uint8_t> file);

}  // namespace capture
