#include "fuzz/scanner_replies.h"

#include <algorithm>
#include <string_view>

#include "fuzz/scanner_names.h"
#include "wire/block_header.h"
#include "wire/command_level.h"
#include "wire/commands.h"
#include "wire/focus_reply.h"
#include "wire/identity_block.h"
#include "wire/identity_reply.h"
#include "wire/product_reply.h"
#include "wire/protocol_bytes.h"
#include "wire/reply_shapes.h"
#include "wire/status_block.h"
#include "wire/status_reply.h"
#include "wire/transfer_header.h"

namespace pmddb832::fuzz {
namespace {

constexpr std::size_t kStatusDataBytes = 11;
constexpr std::size_t kFocusDataBytes = 2;
constexpr std::size_t kHeaderBytes = sizeof(ReplyHeader);

void Begin(Reply& reply, Moment moment, std::size_t size) {
  reply.moment = moment;
  reply.size = size;
  std::fill_n(reply.bytes.begin(), size, std::uint8_t{0});
}

void BeginInformation(Reply& reply, Moment moment, std::size_t dataBytes) {
  Begin(reply, moment, kHeaderBytes + dataBytes);
  Put(reply.bytes, kReplyStx, kStx);
  Put(reply.bytes, kReplyCount, static_cast<std::uint16_t>(dataBytes));
}

void PutName(Reply& reply, std::size_t offset, const ScannerBlock& scanner) {
  const std::string_view name = ProductName(scanner);
  std::copy(name.begin(), name.end(), reply.bytes.begin() + static_cast<std::ptrdiff_t>(offset));
}

// Behind the level each number has a marker before it.
std::size_t PutMarked(Reply& reply, std::size_t offset, char marker, std::uint16_t value) {
  reply.bytes[offset] = static_cast<std::uint8_t>(marker);
  reply.bytes[offset + 1] = static_cast<std::uint8_t>(value);
  reply.bytes[offset + 2] = static_cast<std::uint8_t>(value >> 8);
  return offset + kIdentityResolutionBytes;
}

void AnswerLevel(const ScannerBlock& scanner, Family family, Reply& reply) {
  const std::size_t count = 1 + Get(scanner, scanner::kResolutionCount) % kMostResolutions;
  const std::size_t bytes = kIdentityFixedBytes + count * kIdentityResolutionBytes;
  BeginInformation(reply, Moment::kLevel, bytes);
  Put(reply.bytes, kReplyStatus,
      family == Family::kExtended ? level_reply::kKnowsExtendedCommands : 0);
  const std::string_view level = Level(scanner);
  std::copy(level.begin(), level.end(), reply.bytes.begin() + kHeaderBytes);
  std::size_t offset = kHeaderBytes + kFirstResolutionOffset;
  for (std::size_t i = 0; i + 1 < count; ++i) {
    offset = PutMarked(reply, offset, 'R', Get(scanner, scanner::kMinimumResolution));
  }
  offset = PutMarked(reply, offset, 'R', Get(scanner, scanner::kResolution));
  const std::uint16_t height = Get(scanner, scanner::kFlatbedHeight);
  offset = PutMarked(reply, offset, 'A', Get(scanner, scanner::kFlatbedWidth));
  reply.bytes[offset] = static_cast<std::uint8_t>(height);
  reply.bytes[offset + 1] = static_cast<std::uint8_t>(height >> 8);
}

void AnswerProduct(const ScannerBlock& scanner, Reply& reply) {
  BeginInformation(reply, Moment::kProduct,
                   product_reply::kNameOffset + product_reply::kNameBytes - kHeaderBytes);
  PutName(reply, product_reply::kNameOffset, scanner);
}

void AnswerStatus(const ScannerBlock& scanner, Reply& reply) {
  BeginInformation(reply, Moment::kStatus, kStatusDataBytes);
  auto& bytes = reply.bytes;
  Put(bytes, status_reply::kMain, Get(scanner, scanner::kMainStatus));
  Put(bytes, status_reply::kFeeder, Get(scanner, scanner::kFeederStatus));
  Put(bytes, status_reply::kFeederWidth, Get(scanner, scanner::kFeederWidth));
  Put(bytes, status_reply::kFeederHeight, Get(scanner, scanner::kFeederHeight));
  Put(bytes, status_reply::kTransparency, Get(scanner, scanner::kTransparencyStatus));
  Put(bytes, status_reply::kTransparencyWidth, Get(scanner, scanner::kTransparencyWidth));
  Put(bytes, status_reply::kTransparencyHeight, Get(scanner, scanner::kTransparencyHeight));
}

void AnswerFocus(const ScannerBlock& scanner, Reply& reply) {
  BeginInformation(reply, Moment::kFocus, kFocusDataBytes);
  Put(reply.bytes, focus_reply::kOutcome, Get(scanner, scanner::kFocusOutcome));
  Put(reply.bytes, focus_reply::kPosition, Get(scanner, scanner::kFocusPosition));
}

void AnswerIdentity(const ScannerBlock& scanner, Reply& reply) {
  Begin(reply, Moment::kIdentity, sizeof(IdentityBlock));
  auto& bytes = reply.bytes;
  const std::string_view level = Level(scanner);
  std::copy(level.begin(), level.end(), bytes.begin());
  Put(bytes, identity::kBasicResolution, Get(scanner, scanner::kResolution));
  Put(bytes, identity::kMinimumResolutionLow, Get(scanner, scanner::kMinimumResolution));
  Put(bytes, identity::kMaximumResolution, Get(scanner, scanner::kMaximumResolution));
  Put(bytes, identity::kFlatbedWidth, Get(scanner, scanner::kFlatbedWidth));
  Put(bytes, identity::kFlatbedHeight, Get(scanner, scanner::kFlatbedHeight));
  Put(bytes, identity::kFeederWidth, Get(scanner, scanner::kFeederWidth));
  Put(bytes, identity::kFeederHeight, Get(scanner, scanner::kFeederHeight));
  Put(bytes, identity::kTransparencyWidth, Get(scanner, scanner::kTransparencyWidth));
  Put(bytes, identity::kTransparencyHeight, Get(scanner, scanner::kTransparencyHeight));
  Put(bytes, identity::kFeederFlags, Get(scanner, scanner::kFeederFlags));
  PutName(reply, identity::kProductNameOffset, scanner);
}

void AnswerStatusBlock(const ScannerBlock& scanner, Reply& reply) {
  Begin(reply, Moment::kStatus, sizeof(StatusBlock));
  Put(reply.bytes, status::kMain, Get(scanner, scanner::kMainStatus));
  Put(reply.bytes, status::kFeeder, Get(scanner, scanner::kFeederStatus));
  Put(reply.bytes, status::kTransparency, Get(scanner, scanner::kTransparencyStatus));
}

void AnswerTransferHeader(const ScannerBlock& scanner, const ScanRequest& request, Reply& reply) {
  Begin(reply, Moment::kTransferHeader, sizeof(TransferHeader));
  const std::uint32_t lineBytes = request.LineBytes(Family::kExtended);
  const std::uint32_t perBlock = std::max<std::uint32_t>(request.linesPerBlock, 1);
  const std::uint32_t fullBlocks = request.height == 0 ? 0 : (request.height - 1) / perBlock;
  Put(reply.bytes, transfer::kStx, kStx);
  Put(reply.bytes, transfer::kStatus, Get(scanner, scanner::kStartStatus));
  Put(reply.bytes, transfer::kBlockBytes, perBlock * lineBytes);
  Put(reply.bytes, transfer::kFullBlocks, fullBlocks);
  Put(reply.bytes, transfer::kLastBlockBytes, (request.height - fullBlocks * perBlock) * lineBytes);
}

}  // namespace

// Colours of 4 bits come in two bytes in the extended set.
std::uint32_t ScanRequest::LineBytes(Family family) const {
  const std::uint32_t samples = (colorMode & 0x03) != 0 ? 3 : 1;
  if (family == Family::kExtended && bitsPerSample == 4 && samples == 3) return 2 * width;
  if (bitsPerSample > 8) return 2 * width * samples;
  const std::uint32_t bits = bitsPerSample == 3 ? 4 : bitsPerSample;
  return (width * bits + 7) / 8 * samples;
}

void AnswerAcknowledge(Reply& reply) {
  Begin(reply, Moment::kAcknowledge, 1);
  reply.bytes[0] = kAck;
}

void AnswerStandard(const ScannerBlock& scanner, Family family, std::uint8_t letter, Reply& reply) {
  switch (letter) {
    case esc::kIdentity:
      return AnswerLevel(scanner, family, reply);
    case esc::kProductName:
      return AnswerProduct(scanner, reply);
    case esc::kStatus:
      return AnswerStatus(scanner, reply);
    case esc::kCondition:
      return BeginInformation(reply, Moment::kCondition, 0);
    case esc::kFocusFound:
      return AnswerFocus(scanner, reply);
    default:
      return AnswerAcknowledge(reply);
  }
}

void AnswerExtended(const ScannerBlock& scanner, const ScanRequest& request, std::uint8_t letter,
                    Reply& reply) {
  switch (letter) {
    case fs::kIdentity:
      return AnswerIdentity(scanner, reply);
    case fs::kStatus:
      return AnswerStatusBlock(scanner, reply);
    case fs::kStart:
      return AnswerTransferHeader(scanner, request, reply);
    default:
      return AnswerAcknowledge(reply);
  }
}

std::uint32_t LinesOfBlock(const ScannerBlock& scanner, const ScanRequest& request) {
  return SendsLinesInBlocks(Level(scanner)[1]) ? request.linesPerBlock : 1;
}

void AnswerBlockHeader(const ScannerBlock& scanner, const ScanRequest& request,
                       std::uint32_t linesLeft, Reply& reply) {
  const std::uint32_t lines = std::min(LinesOfBlock(scanner, request), linesLeft);
  const bool last = lines >= linesLeft;
  const std::uint32_t lineBytes = request.LineBytes(Family::kStandard);
  Begin(reply, Moment::kBlockHeader,
        SendsLinesInBlocks(Level(scanner)[1]) ? sizeof(BlockHeader) : block::kOneLineHeaderBytes);
  Put(reply.bytes, block::kStx, kStx);
  Put(reply.bytes, block::kStatus, last ? block::kLast : std::uint8_t{0});
  Put(reply.bytes, block::kLineBytes, static_cast<std::uint16_t>(lineBytes));
  Put(reply.bytes, block::kLines, static_cast<std::uint16_t>(lines));
}

void AnswerStart(const ScannerBlock& scanner, const ScanRequest& request, Reply& reply) {
  AnswerBlockHeader(scanner, request, request.height, reply);
  if (reply.size < sizeof(BlockHeader)) {
    std::copy_n(reply.bytes.begin(), reply.size, reply.bytes.begin() + sizeof(BlockHeader));
    reply.size += sizeof(BlockHeader);
  }
  Put(reply.bytes, block::kStatus,
      Get(reply.bytes, block::kStatus) | Get(scanner, scanner::kStartStatus));
}

}  // namespace pmddb832::fuzz
