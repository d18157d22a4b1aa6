#include "capture/trace/usb_packet.h"

#include "capture/pcapng/pcapng_format.h"

namespace capture {
namespace {

constexpr std::size_t kUsbmonBytes = 48;
constexpr std::size_t kPaddedUsbmonBytes = 64;

// Little-endian, whatever the file is.
std::optional<UsbPacket> ReadUsbPcap(const TracePacket& packet) {
  const TraceBytes header(packet.bytes.All(), false);
  const auto headerBytes = header.At<std::uint16_t>(0);
  if (headerBytes < usb::kUsbPcapHeaderBytes || headerBytes > header.Size()) return std::nullopt;
  UsbPacket read;
  read.request = header.At<std::uint64_t>(2);
  read.result = static_cast<std::int32_t>(header.At<std::uint32_t>(10));
  read.isEnd = (header.At<std::uint8_t>(16) & usb::kFromDevice) != 0;
  read.address = {header.At<std::uint16_t>(17), header.At<std::uint16_t>(19)};
  read.endpoint = header.At<std::uint8_t>(21);
  read.isBulk = header.At<std::uint8_t>(22) == usb::kBulk;
  read.length = header.At<std::uint32_t>(23);
  read.data = header.From(headerBytes).First(read.length).All();
  return read;
}

std::optional<UsbPacket> ReadUsbmon(const TracePacket& packet, std::size_t headerBytes) {
  const TraceBytes& header = packet.bytes;
  if (header.Size() < headerBytes) return std::nullopt;
  UsbPacket read;
  read.request = header.At<std::uint64_t>(0);
  read.isEnd = header.At<std::uint8_t>(8) != 'S';
  read.isBulk = header.At<std::uint8_t>(9) == usb::kBulk;
  read.endpoint = header.At<std::uint8_t>(10);
  read.address = {header.At<std::uint16_t>(12), header.At<std::uint8_t>(11)};
  read.result = static_cast<std::int32_t>(header.At<std::uint32_t>(28));
  read.length = header.At<std::uint32_t>(32);
  read.tellsRequest = true;
  read.data = header.From(headerBytes).First(header.At<std::uint32_t>(36)).All();
  return read;
}

std::optional<UsbPacket> ReadHeader(const TracePacket& packet) {
  switch (packet.linkType) {
    case usb::kUsbPcap:
      return ReadUsbPcap(packet);
    case usb::kUsbmon:
      return ReadUsbmon(packet, kUsbmonBytes);
    case usb::kUsbmonPadded:
      return ReadUsbmon(packet, kPaddedUsbmonBytes);
    default:
      return std::nullopt;
  }
}

}  // namespace

bool IsUsb(std::uint16_t linkType) {
  return linkType == usb::kUsbPcap || linkType == usb::kUsbmon || linkType == usb::kUsbmonPadded;
}

std::optional<UsbPacket> ReadUsbPacket(const TracePacket& packet) {
  std::optional<UsbPacket> read = ReadHeader(packet);
  if (!read.has_value()) return std::nullopt;
  read->isWhole = packet.isWholeTransfer;
  read->microseconds = packet.microseconds;
  read->comment = packet.comment;
  return read;
}

}  // namespace capture
