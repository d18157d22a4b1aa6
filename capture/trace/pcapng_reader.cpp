#include <algorithm>

#include "capture/pcapng/pcapng_format.h"
#include "capture/trace/trace_packets.h"
#include "capture/trace/trace_time.h"

namespace capture {
namespace {

using namespace pcapng;

struct TraceInterface {
  std::uint16_t linkType = 0;
  TimeUnit unit;
  bool isOfCaptures = false;
};

// Calls `take` with the code and the value of each option.
template <class Take>
void ForEachOption(TraceBytes options, const Take& take) {
  while (options.Size() >= 4) {
    const auto code = options.At<std::uint16_t>(0);
    const auto length = options.At<std::uint16_t>(2);
    if (code == kEndOfOptions) return;
    take(code, options.From(4).First(length));
    options = options.From(4 + (std::size_t{length} + 3) / 4 * 4);
  }
}

std::string TextOf(const TraceBytes& value) {
  return {value.All().begin(), value.All().end()};
}

TraceInterface InterfaceOf(const TraceBytes& body) {
  TraceInterface described;
  described.linkType = body.At<std::uint16_t>(0);
  ForEachOption(body.From(8), [&](std::uint16_t code, const TraceBytes& value) {
    if (code == kTimeResolution) described.unit.resolution = value.At<std::uint8_t>(0);
    if (code == kTimeOffset) described.unit.offsetSeconds = value.At<std::uint64_t>(0);
    if (code == kInterfaceName) described.isOfCaptures = TextOf(value) == kDeviceInterface;
  });
  return described;
}

// Takes the blocks of a file one by one.
class Reader {
 public:
  PacketTrace Read(TraceBytes rest) {
    while (rest.Size() > 0) {
      BeginSectionIfAny(rest);
      rest = TraceBytes(rest.All(), isBigEndian_);
      const auto length = rest.At<std::uint32_t>(4);
      trace_.isCut = length < kBlockFrameBytes || length % 4 != 0 || length > rest.Size();
      if (trace_.isCut) break;
      Take(rest.At<std::uint32_t>(0), rest.From(8).First(length - kBlockFrameBytes));
      rest = rest.From(length);
    }
    trace_.lost = std::max(lostByPackets_, lostByStatistics_);
    return std::move(trace_);
  }

 private:
  // A section has a byte order and interfaces of its own.
  void BeginSectionIfAny(const TraceBytes& block) {
    if (block.At<std::uint32_t>(0) != kSectionHeader) return;
    isBigEndian_ = TraceBytes(block.All(), true).At<std::uint32_t>(8) == kByteOrderMagic;
    interfaces_.clear();
  }

  // Other blocks tell nothing of packets.
  void Take(std::uint32_t type, const TraceBytes& body) {
    if (type == kInterfaceDescription) {
      interfaces_.push_back(InterfaceOf(body));
    } else if (type == kEnhancedPacket) {
      TakeEnhanced(body);
    } else if (type == kOldPacket) {
      TakeOld(body);
    } else if (type == kSimplePacket) {
      TakePacket(0, now_, body.From(4).First(body.At<std::uint32_t>(0)), {});
    } else if (type == kInterfaceStatistics) {
      ForEachOption(body.From(12), [this](std::uint16_t code, const TraceBytes& value) {
        if (code == kInterfaceDrops) lostByStatistics_ += value.At<std::uint64_t>(0);
      });
    }
  }

  void TakeEnhanced(const TraceBytes& body) {
    const auto kept = body.At<std::uint32_t>(12);
    const std::uint64_t padded = (std::uint64_t{kept} + 3) / 4 * 4;
    std::string comment;
    ForEachOption(body.From(20 + padded), [&](std::uint16_t code, const TraceBytes& value) {
      if (code == kComment) comment += (comment.empty() ? "" : "\n") + TextOf(value);
      if (code == kDropCount) lostByPackets_ += value.At<std::uint64_t>(0);
    });
    TakePacket(body.At<std::uint32_t>(0), TimeAt(body, 4), body.From(20).First(kept),
               std::move(comment));
  }

  void TakeOld(const TraceBytes& body) {
    TakePacket(body.At<std::uint16_t>(0), TimeAt(body, 4),
               body.From(20).First(body.At<std::uint32_t>(12)), {});
  }

  static std::uint64_t TimeAt(const TraceBytes& body, std::size_t offset) {
    return std::uint64_t{body.At<std::uint32_t>(offset)} << 32 | body.At<std::uint32_t>(offset + 4);
  }

  // A packet of an interface that nobody described is of no use.
  void TakePacket(std::uint32_t interface, std::uint64_t time, const TraceBytes& bytes,
                  std::string comment) {
    if (interface >= interfaces_.size()) return;
    const TraceInterface& from = interfaces_[interface];
    now_ = time;
    trace_.packets.push_back({from.linkType, Microseconds(time, from.unit), bytes,
                              std::move(comment), from.isOfCaptures});
  }

  PacketTrace trace_;
  std::vector<TraceInterface> interfaces_;
  bool isBigEndian_ = false;
  std::uint64_t now_ = 0;  // a simple packet has the time of the one before
  std::uint64_t lostByPackets_ = 0;
  std::uint64_t lostByStatistics_ = 0;
};

}  // namespace

PacketTrace ReadPcapng(std::span<const std::uint8_t> file) {
  return Reader().Read({file, false});
}

}  // namespace capture
