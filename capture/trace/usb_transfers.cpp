#include "capture/trace/usb_transfers.h"

#include <map>
#include <utility>

#include "capture/pcapng/packet_remarks.h"

namespace capture {
namespace {

UsbTransfer TransferOf(const UsbPacket& packet) {
  return {.direction = packet.IsIn() ? Direction::kFromScanner : Direction::kToScanner,
          .isWhole = packet.isWhole,
          .requested = RequestIn(packet.comment),
          .length = packet.length,
          .result = packet.isEnd ? packet.result : 0,
          .microseconds = packet.microseconds,
          .data = packet.data,
          .comment = packet.comment};
}

class Pairing {
 public:
  void Take(const UsbPacket& packet) {
    ++place_;
    if (packet.isWhole) {
      Put(place_, TransferOf(packet));
    } else if (packet.isEnd) {
      End(packet);
    } else {
      Begin(packet);
    }
  }

  UsbTransfers Finish() {
    for (const auto& [request, open] : open_) GiveUp(open);
    for (const auto& [place, transfer] : ended_) result_.transfers.push_back(transfer);
    if (!hasEndsOfWrites_) result_.writesWithoutEnd = 0;
    return std::move(result_);
  }

 private:
  struct Placed {
    std::uint64_t place = 0;
    UsbTransfer transfer;
  };

  void Put(std::uint64_t place, const UsbTransfer& transfer) { ended_.emplace(place, transfer); }

  void Begin(const UsbPacket& packet) {
    UsbTransfer transfer = TransferOf(packet);
    if (packet.IsIn() && packet.tellsRequest) transfer.requested = packet.length;
    const auto [found, isNew] = open_.try_emplace(packet.request, Placed{place_, transfer});
    if (isNew) return;
    GiveUp(found->second);
    found->second = {place_, transfer};
  }

  // Of a read the end has the bytes, of a write the begin.
  void End(const UsbPacket& packet) {
    UsbTransfer transfer = TransferOf(packet);
    const auto found = open_.find(packet.request);
    const bool isPaired = found != open_.end();
    if (isPaired && packet.IsIn()) transfer.requested = found->second.transfer.requested;
    if (isPaired && !packet.IsIn()) {
      transfer.data = found->second.transfer.data;
      transfer.length = found->second.transfer.length;
    }
    if (isPaired) open_.erase(found);
    if (!packet.IsIn() && isPaired) hasEndsOfWrites_ = true;
    const bool isLost = !packet.IsIn() && !isPaired && packet.data.empty();
    if (isLost) {
      ++result_.writesWithoutBegin;
    } else {
      Put(place_, transfer);
    }
  }

  void GiveUp(const Placed& open) {
    if (open.transfer.direction == Direction::kFromScanner) {
      ++result_.readsWithoutEnd;
    } else {
      ++result_.writesWithoutEnd;
      Put(open.place, open.transfer);
    }
  }

  std::uint64_t place_ = 0;
  std::map<std::uint64_t, Placed> open_;
  std::multimap<std::uint64_t, UsbTransfer> ended_;  // by their place in the trace
  bool hasEndsOfWrites_ = false;                     // a trace without any does not tell them
  UsbTransfers result_;
};

}  // namespace

UsbTransfers PairPackets(std::span<const UsbPacket> packets, const ScannerEndpoints& at) {
  Pairing pairing;
  for (const UsbPacket& packet : packets) {
    const bool isIts = packet.isBulk && packet.address == at.address &&
                       (packet.endpoint == at.out || packet.endpoint == at.in);
    if (isIts) pairing.Take(packet);
  }
  return pairing.Finish();
}

}  // namespace capture
