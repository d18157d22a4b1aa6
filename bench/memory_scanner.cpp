#include "bench/memory_scanner.h"

#include <algorithm>
#include <cstring>
#include <string_view>

namespace pmddb832::bench {
namespace {

using Bytes = std::vector<std::uint8_t>;

constexpr std::uint8_t kStx = 0x02;
constexpr std::uint8_t kAck = 0x06;
constexpr std::uint8_t kEsc = 0x1B;
constexpr std::uint8_t kFs = 0x1C;
constexpr std::uint8_t kLastBlock = 0x20;
constexpr std::uint32_t kResolution = 1200;  // the bed's, dots per inch
constexpr std::uint32_t kBedWidth = 10240;   // pixels
constexpr std::uint32_t kBedHeight = 13200;
constexpr std::size_t kBlockHeaderBytes = 6;
constexpr std::uint32_t kLongestBlock = 0xFF00 - 10;  // bytes, in the standard set

void Append(Bytes& bytes, std::uint32_t value, std::size_t width) {
  for (std::size_t i = 0; i < width; ++i)
    bytes.push_back(static_cast<std::uint8_t>(value >> 8 * i));
}

void Append(Bytes& bytes, std::string_view text) {
  for (const char character : text) bytes.push_back(static_cast<std::uint8_t>(character));
}

std::uint32_t Number(std::span<const std::uint8_t> bytes) {
  std::uint32_t value = 0;
  for (std::size_t i = 0; i < bytes.size(); ++i) value |= std::uint32_t{bytes[i]} << 8 * i;
  return value;
}

Bytes Information(std::uint8_t status, const Bytes& data) {
  Bytes reply{kStx, status};
  Append(reply, static_cast<std::uint32_t>(data.size()), 2);
  for (const std::uint8_t byte : data) reply.push_back(byte);
  return reply;
}

Bytes ExtendedIdentity() {
  Bytes identity;
  Append(identity, "B8");
  identity.resize(4);
  Append(identity, kResolution, 4);
  Append(identity, 50 / 2, 4);
  Append(identity, 2 * kResolution, 4);
  identity.resize(20);
  Append(identity, kBedWidth, 4);
  Append(identity, kBedHeight, 4);
  identity.resize(80, ' ');
  return identity;
}

Bytes StandardIdentity() {
  Bytes identity;
  Append(identity, "B8R");
  Append(identity, 300, 2);
  Append(identity, "R");
  Append(identity, kResolution, 2);
  Append(identity, "A");
  Append(identity, kBedWidth, 2);
  Append(identity, kBedHeight, 2);
  return identity;
}

}  // namespace

MemoryScanner::MemoryScanner(Family family, std::uint32_t pixelBits,
                             std::span<const std::uint8_t> page)
    : family_(family), pixelBits_(pixelBits), page_(page) {}

// What the prepared replies do not hold is an acknowledgement, the header of a block or the image.
std::int32_t MemoryScanner::RawReadData(void* buffer, std::uint32_t* byteCount, void*) {
  ++transfers_;
  const std::size_t count = *byteCount;
  if (replyServed_ == reply_.size() && count == 1) {
    std::memcpy(buffer, &kAck, 1);
    return 0;
  }
  if (replyServed_ == reply_.size() && family_ == Family::kStandard && count == kBlockHeaderBytes) {
    reply_ = NextBlockHeader();
    replyServed_ = 0;
  }
  const bool fromReply = replyServed_ < reply_.size();
  const std::span<const std::uint8_t> source = fromReply ? std::span{reply_} : page_;
  std::size_t& served = fromReply ? replyServed_ : pageServed_;
  if (count > source.size() - served) return -1;
  std::memcpy(buffer, source.data() + served, count);
  served += count;
  return 0;
}

std::int32_t MemoryScanner::RawWriteData(void* buffer, std::uint32_t byteCount, void*) {
  ++transfers_;
  const std::span bytes{static_cast<const std::uint8_t*>(buffer), byteCount};
  if (byteCount == 2 && (bytes[0] == kEsc || bytes[0] == kFs)) {
    Command(bytes[0], bytes[1]);
  } else {
    TakeParameters(bytes);
  }
  return 0;
}

void MemoryScanner::TakeParameters(std::span<const std::uint8_t> block) {
  constexpr std::size_t kWholeScan = 64;
  if (block.size() == kWholeScan) {
    lineBytes_ = Number(block.subspan(16, 4)) * pixelBits_ / 8;
    lines_ = Number(block.subspan(20, 4));
    linesPerBlock_ = block[28];
  } else if (letter_ == 'A') {
    lineBytes_ = Number(block.subspan(4, 2)) * pixelBits_ / 8;
    lines_ = Number(block.subspan(6, 2));
  } else if (letter_ == 'd') {
    linesPerBlock_ = block[0];
  }
}

void MemoryScanner::Command(std::uint8_t prefix, std::uint8_t letter) {
  letter_ = letter;
  pageServed_ = 0;
  linesAnnounced_ = 0;
  reply_ = prefix == kFs ? ExtendedReply(letter) : StandardReply(letter);
  replyServed_ = 0;
}

MemoryScanner::Bytes MemoryScanner::ExtendedReply(std::uint8_t letter) {
  switch (letter) {
    case 'I':
      return ExtendedIdentity();
    case 'F':
      return Bytes(16);
    case 'G':
      return TransferHeader();
    default:
      return {};
  }
}

MemoryScanner::Bytes MemoryScanner::StandardReply(std::uint8_t letter) {
  constexpr std::uint8_t kAnswersExtended = 0x02;
  switch (letter) {
    case 'I':
      return Information(family_ == Family::kExtended ? kAnswersExtended : 0, StandardIdentity());
    case '?':
      return Information(0, Bytes(24, ' '));
    case 'f':
      return Information(0, Bytes(11));
    case 'F':
      return Information(0, {});
    case 'G':
      return NextBlockHeader();
    default:
      return {};
  }
}

MemoryScanner::Bytes MemoryScanner::TransferHeader() const {
  const std::uint32_t fullBlocks = (lines_ - 1) / linesPerBlock_;
  Bytes header{kStx, 0};
  Append(header, linesPerBlock_ * lineBytes_, 4);
  Append(header, fullBlocks, 4);
  Append(header, (lines_ - fullBlocks * linesPerBlock_) * lineBytes_, 4);
  return header;
}

MemoryScanner::Bytes MemoryScanner::NextBlockHeader() {
  const std::uint32_t lines =
      std::min({lines_ - linesAnnounced_, linesPerBlock_, kLongestBlock / lineBytes_});
  linesAnnounced_ += lines;
  Bytes header;
  header.reserve(kBlockHeaderBytes);
  Append(header, kStx, 1);
  Append(header, linesAnnounced_ == lines_ ? kLastBlock : 0, 1);
  Append(header, lineBytes_, 2);
  Append(header, lines, 2);
  return header;
}

}  // namespace pmddb832::bench
