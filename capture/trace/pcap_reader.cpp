#include "capture/decode/decode_fields.h"
#include "capture/file/number_text.h"
#include "capture/pcapng/pcapng_format.h"
#include "capture/trace/trace_packets.h"

namespace capture {
namespace {

constexpr std::uint32_t kMicroseconds = 0xA1B2C3D4;
constexpr std::uint32_t kNanoseconds = 0xA1B23C4D;
constexpr std::size_t kFileHeaderBytes = 24;
constexpr std::size_t kLinkType = 20;  // in it
constexpr std::size_t kRecordHeaderBytes = 16;

bool IsPcap(std::uint32_t magic) {
  return magic == kMicroseconds || magic == kNanoseconds;
}

}  // namespace

PacketTrace ReadPackets(std::span<const std::uint8_t> file) {
  const auto littleEndian = TraceBytes(file, false).At<std::uint32_t>(0);
  const auto bigEndian = TraceBytes(file, true).At<std::uint32_t>(0);
  if (littleEndian == pcapng::kSectionHeader) return ReadPcapng(file);
  if (IsPcap(littleEndian) || IsPcap(bigEndian)) return ReadPcap(file);
  const std::string came = file.size() < 4 ? Counted(file.size(), "byte")
                                           : "a file that begins with " + HexText(file.first(4));
  throw TraceError("expected a trace in the format pcap or pcapng, came " + came +
                   ". Save the trace as one of these; Wireshark's editcap converts others.");
}

PacketTrace ReadPcap(std::span<const std::uint8_t> file) {
  const bool isBigEndian = IsPcap(TraceBytes(file, true).At<std::uint32_t>(0));
  const TraceBytes all(file, isBigEndian);
  const bool hasNanoseconds = all.At<std::uint32_t>(0) == kNanoseconds;
  const auto linkType = all.At<std::uint16_t>(kLinkType + (isBigEndian ? 2 : 0));
  PacketTrace trace;
  trace.isCut = file.size() < kFileHeaderBytes;
  for (TraceBytes rest = all.From(kFileHeaderBytes); rest.Size() > 0;) {
    const auto kept = rest.At<std::uint32_t>(8);
    const TraceBytes behind = rest.From(kRecordHeaderBytes);
    trace.isCut = rest.Size() < kRecordHeaderBytes || kept > behind.Size();
    if (trace.isCut) break;
    const std::uint64_t fraction = rest.At<std::uint32_t>(4) / (hasNanoseconds ? 1000 : 1);
    const std::uint64_t time = std::uint64_t{rest.At<std::uint32_t>(0)} * 1'000'000 + fraction;
    trace.packets.push_back({linkType, time, behind.First(kept), {}, false});
    rest = behind.From(kept);
  }
  return trace;
}

}  // namespace capture
