#include "capture/trace/transfer_cutter.h"

#include <algorithm>
#include <array>
#include <limits>
#include <utility>

#include "capture/conversation/captured_conversation.h"
#include "capture/file/crc32.h"
#include "capture/pcapng/packet_remarks.h"
#include "capture/record/recorder.h"

namespace capture {
namespace {

using Bytes = std::vector<std::uint8_t>;
using Pieces = std::span<const UsbTransfer>;

// The smallest packet of a bulk endpoint; the others are multiples of it.
constexpr std::uint32_t kPacketBytes = 8;

bool MayGoOn(const UsbTransfer& piece) {
  return piece.result >= 0 && piece.length > 0 && piece.length % kPacketBytes == 0 &&
         piece.requested.value_or(piece.length) == piece.length;
}

bool AreKept(Pieces pieces) {
  return std::all_of(pieces.begin(), pieces.end(),
                     [](const UsbTransfer& piece) { return piece.IsKept(); });
}

Bytes BytesOf(Pieces pieces) {
  Bytes bytes;
  for (const UsbTransfer& piece : pieces) {
    bytes.insert(bytes.end(), piece.data.begin(), piece.data.end());
  }
  return bytes;
}

// Of one that was not kept to its end only what is there.
Transfer WriteOf(Pieces pieces) {
  Transfer write{.result = pieces.back().result,
                 .microseconds = pieces.back().microseconds,
                 .bytes = BytesOf(pieces)};
  write.requested = static_cast<std::uint32_t>(write.bytes->size());
  write.delivered = UsuallyDelivered(write);
  write.checksum = Crc32(*write.bytes);
  return write;
}

std::uint8_t LastByteOf(const UsbTransfer& piece) {
  return piece.IsKept() && !piece.data.empty() ? piece.data.back() : std::uint8_t{0};
}

// Of image data that were not kept to their end there is only the length, of short replies zeros in
// the place of what is missing.
void PutBytes(Pieces pieces, Transfer& read) {
  const UsbTransfer& last = pieces.back();
  read.isImage = read.delivered > kLongestReply;
  if (read.isImage && !AreKept(pieces)) {
    const KeptOfImage kept = ImageIn(last.comment).value_or(KeptOfImage{0, LastByteOf(last)});
    read.checksum = kept.checksum;
    read.lastByte = kept.lastByte;
    return;
  }
  read.bytes = BytesOf(pieces);
  read.bytes->resize(read.delivered);
  read.checksum = Crc32(*read.bytes);
  if (read.isImage) read.lastByte = read.bytes->back();
}

// `expected` is what the protocol waits for, 0 when that is not known.
Transfer ReadOf(Pieces pieces, std::uint64_t expected) {
  const UsbTransfer& last = pieces.back();
  Transfer read{.direction = Direction::kFromScanner,
                .result = last.result,
                .microseconds = last.microseconds,
                .bytes = std::nullopt};
  for (const UsbTransfer& piece : pieces) read.delivered += piece.length;
  const std::uint64_t told = last.requested.value_or(read.delivered);
  const std::uint64_t asked = expected >= read.delivered && expected != 0 ? expected : told;
  const std::uint64_t most = std::numeric_limits<std::uint32_t>::max();
  read.requested =
      static_cast<std::uint32_t>(std::clamp<std::uint64_t>(asked, read.delivered, most));
  PutBytes(pieces, read);
  return read;
}

bool AsksForIdentity(pmddb832::ReplyKind reply) {
  return reply == pmddb832::ReplyKind::kLevel || reply == pmddb832::ReplyKind::kIdentityBlock;
}

}  // namespace

std::vector<Transfer> TransferCutter::Cut() {
  for (std::size_t i = 0; i < bus_.size();) {
    i += bus_[i].direction == Direction::kToScanner ? TakeWrite(i) : TakeRead(i);
  }
  return std::move(cut_);
}

void TransferCutter::Put(Transfer transfer) {
  const bool isBehindCommand = conversation_.Command() != nullptr;
  const bool isWrite = transfer.direction == Direction::kToScanner;
  const bool wasWaiting = isWrite && AwaitsMore();
  const std::uint64_t expected = isWrite ? 0 : conversation_.NextReadBytes();
  const Part part = Follow(conversation_, transfer);
  if (cut_.empty()) beginsInside_ = part != Part::kCommand && part != Part::kUnknown;
  if (!isBehindCommand && part == Part::kCommand) {
    lacksIdentification_ = !beginsInside_ && !AsksForIdentity(conversation_.Command()->reply);
  }
  const bool isTooMuch = expected != 0 && transfer.delivered > expected;
  if (isTooMuch || (isBehindCommand && part == Part::kStray)) {
    ++unasked_;
  } else if (wasWaiting && part != Part::kParameters) {
    ++unanswered_;
  }
  cut_.push_back(std::move(transfer));
}

bool TransferCutter::AwaitsMore() const {
  return conversation_.NextReadBytes() != 0 || conversation_.NextParameterBytes() != 0;
}

// How many of the bus it makes one of.
std::size_t TransferCutter::TakeWrite(std::size_t first) {
  const std::size_t count = PiecesOfWrite(first);
  const Pieces pieces = bus_.subspan(first, count);
  if (!AreKept(pieces)) ++cutShort_;
  if (count > 1) joined_ += count;
  Put(WriteOf(pieces));
  return count;
}

std::size_t TransferCutter::TakeRead(std::size_t first) {
  const UsbTransfer& read = bus_[first];
  const std::uint64_t expected = read.isWhole ? 0 : conversation_.NextReadBytes();
  if (expected != 0 && read.length > expected && TakeInPieces(read)) return 1;
  const std::size_t count = PiecesOfRead(first, expected);
  const Pieces pieces = bus_.subspan(first, count);
  if (!AreKept(pieces) && !ImageIn(pieces.back().comment).has_value()) ++cutShort_;
  if (count > 1) joined_ += count;
  Put(ReadOf(pieces, expected));
  return count;
}

// False when the protocol does not tell where to cut.
bool TransferCutter::TakeInPieces(const UsbTransfer& read) {
  if (!read.IsKept() || read.result < 0) return false;
  Conversation ahead = conversation_;
  std::vector<UsbTransfer> pieces;
  for (std::span<const std::uint8_t> rest = read.data; !rest.empty();) {
    const std::uint64_t next = ahead.NextReadBytes();
    if (next == 0 || next > rest.size()) return false;
    UsbTransfer piece = read;
    piece.data = rest.first(static_cast<std::size_t>(next));
    piece.length = static_cast<std::uint32_t>(next);
    ahead.Read(piece.data, false);
    pieces.push_back(piece);
    rest = rest.subspan(static_cast<std::size_t>(next));
  }
  for (const UsbTransfer& piece : pieces) Put(ReadOf(Pieces(&piece, 1), piece.length));
  ++split_;
  return true;
}

bool TransferCutter::IsWriteAt(std::size_t place) const {
  return place < bus_.size() && bus_[place].direction == Direction::kToScanner &&
         !bus_[place].isWhole;
}

// A command whose letters came one by one, or parameters in pieces that are together what is
// missing.
std::size_t TransferCutter::PiecesOfWrite(std::size_t first) const {
  if (bus_[first].isWhole) return 1;
  if (bus_[first].data.size() == 1 && IsWriteAt(first + 1) && bus_[first + 1].data.size() == 1) {
    const std::array<std::uint8_t, 2> both{bus_[first].data[0], bus_[first + 1].data[0]};
    if (pmddb832::FindCommand(both) != nullptr) return 2;
  }
  const std::size_t missing = conversation_.NextParameterBytes();
  std::size_t bytes = 0;
  for (std::size_t i = first; bytes < missing && IsWriteAt(i) && bus_[i].IsKept(); ++i) {
    bytes += bus_[i].length;
    if (bytes == missing) return i - first + 1;
  }
  return 1;
}

std::size_t TransferCutter::PiecesOfRead(std::size_t first, std::uint64_t expected) const {
  std::uint64_t bytes = bus_[first].length;
  std::size_t next = first + 1;
  while (bytes < expected && MayGoOn(bus_[next - 1]) && next < bus_.size()) {
    const UsbTransfer& piece = bus_[next];
    if (piece.direction == Direction::kToScanner || bytes + piece.length > expected) break;
    bytes += piece.length;
    ++next;
  }
  return next - first;
}

}  // namespace capture
