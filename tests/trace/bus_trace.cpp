#include "tests/trace/bus_trace.h"

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iterator>

#include "capture/file/capture_reader.h"
#include "capture/file/capture_writer.h"

namespace pmddb832::tests {

NumberWriter& NumberWriter::Put(std::uint64_t number, std::size_t width) {
  for (std::size_t i = 0; i < width; ++i) {
    const std::size_t shift = 8 * (isBigEndian_ ? width - 1 - i : i);
    bytes.push_back(static_cast<std::uint8_t>(shift < 64 ? number >> shift : 0));
  }
  return *this;
}

NumberWriter& NumberWriter::Put(const Bytes& all) {
  bytes.insert(bytes.end(), all.begin(), all.end());
  return *this;
}

BusTrace::BusTrace(std::uint16_t linkType, bool isBigEndian, bool hasNanoseconds)
    : linkType_(linkType),
      isBigEndian_(isBigEndian),
      hasNanoseconds_(hasNanoseconds),
      file_(isBigEndian) {
  file_.Put(hasNanoseconds ? 0xA1B23C4D : 0xA1B2C3D4, 4).Put(2, 2).Put(4, 2).Put(0, 8);
  file_.Put(262144, 4).Put(linkType, 4);
  // The bus tells what is at it: a control transfer of another device.
  Add({.kind = 2, .endpoint = 0x80, .device = 1, .length = 18});
}

Bytes BusTrace::HeaderOf(const BusPacket& packet) const {
  if (linkType_ == 249) {
    NumberWriter header(false);
    const std::uint32_t length = packet.data.empty() ? 0 : packet.length;
    header.Put(27, 2).Put(packet.request, 8).Put(static_cast<std::uint32_t>(packet.status), 4);
    header.Put(9, 2).Put(packet.isEnd ? 1 : 0, 1).Put(packet.bus, 2).Put(packet.device, 2);
    return header.Put(packet.endpoint, 1).Put(packet.kind, 1).Put(length, 4).bytes;
  }
  NumberWriter header(isBigEndian_);
  header.Put(packet.request, 8).Put(packet.isEnd ? 'C' : 'S', 1).Put(packet.kind, 1);
  header.Put(packet.endpoint, 1).Put(packet.device, 1).Put(packet.bus, 2).Put('-', 1);
  header.Put(packet.data.empty() ? '<' : 0, 1).Put(packet.microseconds / 1'000'000, 8);
  header.Put(packet.microseconds % 1'000'000, 4);
  header.Put(static_cast<std::uint32_t>(packet.isEnd ? packet.status : -115), 4);
  header.Put(packet.length, 4).Put(packet.data.size(), 4).Put(0, 8);
  if (linkType_ == 220) header.Put(0, 8).Put(0x200, 4).Put(0, 4);
  return header.bytes;
}

void BusTrace::Add(const BusPacket& packet) {
  const Bytes header = HeaderOf(packet);
  const std::uint64_t time = kEpoch + packet.microseconds;
  const std::uint64_t bytes = header.size() + packet.data.size();
  file_.Put(time / 1'000'000, 4).Put(time % 1'000'000 * (hasNanoseconds_ ? 1000 : 1), 4);
  file_.Put(bytes, 4).Put(bytes, 4).Put(header).Put(packet.data);
}

void BusTrace::AddWrite(const Bytes& data, std::uint64_t end, std::int32_t status) {
  const auto length = static_cast<std::uint32_t>(data.size());
  Add({.request = ++requests_, .length = length, .data = data, .microseconds = end});
  Add({.request = requests_,
       .isEnd = true,
       .status = status,
       .length = status < 0 ? 0 : length,
       .microseconds = end});
}

void BusTrace::AddRead(std::uint32_t asked, const Bytes& data, std::uint64_t end,
                       std::int32_t status) {
  Add({.request = ++requests_, .endpoint = 0x81, .length = asked, .microseconds = end});
  Add({.request = requests_,
       .isEnd = true,
       .endpoint = 0x81,
       .status = status,
       .length = static_cast<std::uint32_t>(data.size()),
       .data = data,
       .microseconds = end});
}

void BusTrace::AddInPieces(const capture::Transfer& transfer, std::uint32_t most) {
  std::uint32_t asked = transfer.requested;
  Bytes rest = transfer.bytes.value();
  const bool isWrite = transfer.direction == capture::Direction::kToScanner;
  do {
    const std::uint32_t now = std::min(asked, most);
    const auto count = std::min<std::ptrdiff_t>(now, static_cast<std::ptrdiff_t>(rest.size()));
    const Bytes piece(rest.begin(), rest.begin() + count);
    rest.erase(rest.begin(), rest.begin() + count);
    asked -= now;
    const bool isLast = asked == 0 || (rest.empty() && static_cast<std::uint32_t>(count) < now);
    const std::int32_t status = isLast || rest.empty() ? transfer.result : 0;
    if (isWrite) AddWrite(piece, transfer.microseconds, status);
    if (!isWrite) AddRead(now, piece, transfer.microseconds, status);
    if (isLast || status < 0) return;
  } while (true);
}

Bytes FileBytes(const std::string& name) {
  std::ifstream file(name, std::ios::binary);
  return {std::istreambuf_iterator<char>(file), {}};
}

capture::Capture TransfersOf(const capture::Capture& capture) {
  capture::Capture transfers;
  for (const capture::Entry& entry : capture.entries) {
    if (std::holds_alternative<capture::Transfer>(entry)) transfers.entries.push_back(entry);
  }
  return transfers;
}

std::vector<std::string> CaptureFiles() {
  std::vector<std::string> files;
  for (const auto& file : std::filesystem::directory_iterator(PMDDB832_CAPTURES)) {
    files.push_back(file.path().string());
  }
  std::sort(files.begin(), files.end());
  return files;
}

capture::Capture CaptureIn(const std::string& file) {
  std::ifstream text(file);
  return capture::ReadCapture(text, file);
}

std::string TextOf(const capture::Capture& capture) {
  std::string text;
  for (const capture::Entry& entry : capture.entries) text += capture::FormatEntry(entry);
  return text;
}

}  // namespace pmddb832::tests
