#include "capture/pcapng/pcapng_writer.h"

#include <limits>
#include <span>
#include <string>
#include <variant>

#include "capture/decode/decode_calls.h"
#include "capture/decode/decode_fields.h"
#include "capture/pcapng/packet_remarks.h"
#include "capture/pcapng/pcapng_format.h"

namespace capture {
namespace {

using Bytes = std::vector<std::uint8_t>;

using namespace pcapng;

constexpr std::uint16_t kBulkTransfer = 9;  // the function code of bulk and interrupt transfers
constexpr std::uint16_t kBus = 1;
constexpr std::uint16_t kDevice = 1;
constexpr std::uint8_t kEndpointOut = 0x02;
constexpr std::uint8_t kEndpointIn = 0x81;

template <class Number>
void Put(Bytes& to, Number value) {
  for (std::size_t i = 0; i < sizeof(Number); ++i) {
    to.push_back(static_cast<std::uint8_t>(std::uint64_t{value} >> (8 * i)));
  }
}

void PutPadded(Bytes& to, std::span<const std::uint8_t> bytes) {
  to.insert(to.end(), bytes.begin(), bytes.end());
  while (to.size() % 4 != 0) to.push_back(0);
}

void PutOption(Bytes& to, std::uint16_t code, std::string_view text) {
  if (text.empty()) return;
  text = text.substr(0, std::numeric_limits<std::uint16_t>::max());
  Put(to, code);
  Put(to, static_cast<std::uint16_t>(text.size()));
  PutPadded(to, Bytes(text.begin(), text.end()));
}

void PutEndOfOptions(Bytes& to) {
  Put(to, kEndOfOptions);
  Put(to, std::uint16_t{0});
}

// A block has its length in front of its body and behind it.
void PutBlock(Bytes& to, std::uint32_t type, const Bytes& body) {
  const auto length = static_cast<std::uint32_t>(body.size() + kBlockFrameBytes);
  Put(to, type);
  Put(to, length);
  to.insert(to.end(), body.begin(), body.end());
  Put(to, length);
}

void PutSectionHeader(Bytes& to) {
  Bytes body;
  Put(body, kByteOrderMagic);
  Put(body, std::uint16_t{1});  // version 1.0
  Put(body, std::uint16_t{0});
  Put(body, ~std::uint64_t{0});  // length of the section: not given
  PutOption(body, kUserApplication, "pmscan");
  PutEndOfOptions(body);
  PutBlock(to, kSectionHeader, body);
}

void PutInterface(Bytes& to) {
  Bytes body;
  Put(body, usb::kUsbPcap);
  Put(body, std::uint16_t{0});
  Put(body, std::uint32_t{0});  // packets of any length; times in microseconds, the default
  PutOption(body, kInterfaceName, kDeviceInterface);
  PutEndOfOptions(body);
  PutBlock(to, kInterfaceDescription, body);
}

Bytes PseudoHeader(const Transfer& transfer, std::uint64_t number, std::uint32_t length) {
  const bool isIn = transfer.direction == Direction::kFromScanner;
  const bool isOver = isIn || transfer.result != 0;
  Bytes header;
  Put(header, usb::kUsbPcapHeaderBytes);
  Put(header, number);  // of the request
  Put(header, static_cast<std::uint32_t>(transfer.result));
  Put(header, kBulkTransfer);
  Put(header, isOver ? usb::kFromDevice : std::uint8_t{0});
  Put(header, kBus);
  Put(header, kDevice);
  Put(header, isIn ? kEndpointIn : kEndpointOut);
  Put(header, usb::kBulk);
  Put(header, length);
  return header;
}

// Puts the transfers into packets, and what lies between them into their comments.
class PacketWriter {
 public:
  explicit PacketWriter(Bytes& packets) : file_(packets) {}

  void operator()(const CallBegin& call) {
    const std::string arguments = DescribeArguments(call);
    Remark("host calls " + call.name + (arguments.empty() ? "" : ": " + arguments));
  }

  void operator()(const CallEnd& call) {
    const std::string results = Joined(DescribeResults(call));
    Remark(call.name + " returns" + (results.empty() ? "" : ": " + results));
  }

  void operator()(const SettingsChange&) {}

  void operator()(const Transfer& transfer) {
    Remark(RequestRemark(transfer));
    Remark(ImageRemark(transfer));
    PutPacket(transfer);
    remarks_.clear();
  }

 private:
  void Remark(const std::string& text) {
    if (text.empty()) return;
    remarks_.append(remarks_.empty() ? "" : "\n").append(text);
  }

  void PutPacket(const Transfer& transfer) {
    const auto kept = transfer.Kept();
    const std::uint32_t length =
        transfer.bytes.has_value() ? static_cast<std::uint32_t>(kept.size()) : transfer.delivered;
    Bytes packet = PseudoHeader(transfer, ++number_, length);
    packet.insert(packet.end(), kept.begin(), kept.end());
    Bytes body;
    Put(body, std::uint32_t{0});  // of the only interface
    Put(body, static_cast<std::uint32_t>(transfer.microseconds >> 32));
    Put(body, static_cast<std::uint32_t>(transfer.microseconds));
    Put(body, static_cast<std::uint32_t>(packet.size()));
    Put(body, std::uint32_t{usb::kUsbPcapHeaderBytes} + length);
    PutPadded(body, packet);
    PutOption(body, kComment, remarks_);
    PutEndOfOptions(body);
    PutBlock(file_, kEnhancedPacket, body);
  }

  Bytes& file_;
  std::uint64_t number_ = 0;
  std::string remarks_;
};

}  // namespace

std::vector<std::uint8_t> ToPcapng(const Capture& capture) {
  Bytes file;
  PutSectionHeader(file);
  PutInterface(file);
  PacketWriter writer(file);
  for (const Entry& entry : capture.entries) std::visit(writer, entry);
  return file;
}

}  // namespace capture
