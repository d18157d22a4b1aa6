#include "capture/trace/trace_import.h"

#include <algorithm>

#include "capture/file/number_text.h"
#include "capture/trace/transfer_cutter.h"

namespace capture {
namespace {

constexpr std::uint64_t kOneDay = 86'400'000'000;  // microseconds

struct UsbTrace {
  std::vector<UsbPacket> packets;
  std::uint64_t ofOtherLinks = 0;
  std::uint64_t unreadable = 0;
  std::uint64_t begin = 0;  // of its time, in microseconds
};

UsbTrace ReadUsbPackets(const PacketTrace& trace) {
  UsbTrace usb;
  for (const TracePacket& packet : trace.packets) {
    const std::optional<UsbPacket> read = ReadUsbPacket(packet);
    if (read.has_value()) {
      usb.packets.push_back(*read);
    } else if (IsUsb(packet.linkType)) {
      ++usb.unreadable;
    } else {
      ++usb.ofOtherLinks;
    }
  }
  if (trace.packets.empty()) return usb;
  const TracePacket& first = trace.packets.front();
  if (!first.isWholeTransfer && first.microseconds >= kOneDay) usb.begin = first.microseconds;
  return usb;
}

void RequireUsb(const PacketTrace& trace, const UsbTrace& usb) {
  if (!usb.packets.empty()) return;
  const std::string links = trace.packets.empty()
                                ? "no packet"
                                : Counted(trace.packets.size(), "packet") + " of link type " +
                                      std::to_string(trace.packets.front().linkType);
  throw TraceError(
      "expected USB packets, of usbmon (link type 189 or 220) or USBPcap (249), came " + links +
      ". Trace the bus that the scanner is at.");
}

// Packets that do not belong to the conversation.
struct LeftOut {
  std::uint64_t ofOtherDevices = 0;
  std::uint64_t ofOtherKinds = 0;      // of the scanner: control transfers and interrupts
  std::uint64_t atOtherEndpoints = 0;  // likewise
};

LeftOut CountLeftOut(const UsbTrace& usb, const ScannerEndpoints& scanner) {
  LeftOut left;
  for (const UsbPacket& packet : usb.packets) {
    if (packet.address != scanner.address) {
      ++left.ofOtherDevices;
    } else if (!packet.isBulk) {
      ++left.ofOtherKinds;
    } else if (packet.endpoint != scanner.in && packet.endpoint != scanner.out) {
      ++left.atOtherEndpoints;
    }
  }
  return left;
}

class Notes {
 public:
  // "Left out: 12 packets of other devices."
  void LeaveOut(std::uint64_t count, const std::string& noun, const std::string& which) {
    if (count > 0) notes_.push_back("Left out: " + Counted(count, noun) + which + ".");
  }
  void Add(std::uint64_t count, const std::string& noun, const std::string& which) {
    if (count > 0) notes_.push_back(Counted(count, noun) + which + ".");
  }
  void AddIf(bool isSo, const char* sentence) {
    if (isSo) notes_.emplace_back(sentence);
  }
  std::vector<std::string> Take() { return std::move(notes_); }

 private:
  std::vector<std::string> notes_;
};

void NoteLeftOut(const UsbTrace& usb, const LeftOut& left, Notes& notes) {
  notes.LeaveOut(usb.ofOtherLinks, "packet", " that are none of a USB");
  notes.LeaveOut(usb.unreadable, "packet", " cut within the USB header");
  notes.LeaveOut(left.ofOtherDevices, "packet", " of other devices");
  notes.LeaveOut(left.ofOtherKinds, "packet", " of the scanner's control and interrupt transfers");
  notes.LeaveOut(left.atOtherEndpoints, "packet", " at the scanner's other bulk endpoints");
  const auto isOfCall = [](const UsbPacket& packet) {
    return packet.comment.find("host calls ") != std::string_view::npos;
  };
  const auto calls = std::count_if(usb.packets.begin(), usb.packets.end(), isOfCall);
  notes.LeaveOut(static_cast<std::uint64_t>(calls), "comment", " on calls of the host");
}

void NoteTransfers(const UsbTransfers& bus, const TransferCutter& cutter, Notes& notes) {
  notes.LeaveOut(bus.readsWithoutEnd, "read", " whose end is not in the trace");
  notes.LeaveOut(bus.writesWithoutBegin, "write",
                 " whose begin, with the bytes, is not in the trace");
  notes.Add(bus.writesWithoutEnd, "write", " without an end in the trace: taken for good");
  notes.Add(cutter.CutShort(), "transfer",
            " of which the trace kept only a part: of image data the length is kept, else zeros "
            "stand for what is missing");
  notes.Add(cutter.Joined(), "transfer", " of the bus joined to those that the protocol has");
  notes.Add(cutter.Split(), "transfer", " of the bus split into those that the protocol has");
}

void NoteGaps(const PacketTrace& trace, const TransferCutter& cutter, Notes& notes) {
  notes.AddIf(cutter.BeginsInside(),
              "The trace begins within the conversation: what stands before the first command "
              "cannot be understood.");
  notes.AddIf(cutter.LacksIdentification(),
              "The first command does not ask what the scanner is: what stands in front of it may "
              "be missing.");
  notes.Add(cutter.Unasked(), "transfer",
            " that nothing asked for, or for less: packets may be missing");
  notes.Add(cutter.Unanswered(), "time",
            " something was sent before all that was waited for had come: packets may be missing");
  notes.AddIf(cutter.EndsInside(),
              "The trace ends within the conversation: what was asked for last is missing.");
  notes.Add(trace.lost, "packet", " got lost, says the trace: the conversation may have gaps");
  notes.AddIf(trace.isCut, "The file ends, or is damaged, behind its last packet that is whole.");
}

}  // namespace

ImportedTrace ImportTrace(std::span<const std::uint8_t> file, const DeviceChoice& choice) {
  const PacketTrace trace = ReadPackets(file);
  const UsbTrace usb = ReadUsbPackets(trace);
  RequireUsb(trace, usb);
  const ScannerEndpoints scanner = FindScanner(usb.packets, choice);
  const UsbTransfers bus = PairPackets(usb.packets, scanner);
  TransferCutter cutter(bus.transfers);
  ImportedTrace imported{{}, scanner.address, {}};
  for (Transfer& transfer : cutter.Cut()) {
    transfer.microseconds -= std::min(transfer.microseconds, usb.begin);
    imported.capture.entries.emplace_back(std::move(transfer));
  }
  Notes notes;
  notes.AddIf(scanner.isGuess,
              "No device is sent a scanner's commands: taken is the only one with bulk transfers.");
  NoteLeftOut(usb, CountLeftOut(usb, scanner), notes);
  NoteTransfers(bus, cutter, notes);
  NoteGaps(trace, cutter, notes);
  imported.notes = notes.Take();
  return imported;
}

}  // namespace capture
