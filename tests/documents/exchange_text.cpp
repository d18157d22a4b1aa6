#include "tests/documents/exchange_text.h"

#include <algorithm>
#include <array>
#include <sstream>
#include <utility>

#include "capture/conversation/captured_conversation.h"
#include "capture/decode/decode_commands.h"
#include "capture/decode/decode_replies.h"
#include "tests/documents/table.h"

namespace documents {
namespace {

using capture::Part;
using Lines = std::vector<std::string>;

constexpr std::size_t kRowBytes = 16;
constexpr std::size_t kMostBytes = 96;
constexpr std::size_t kShortTransfer = 26;  // characters: eight bytes
constexpr std::size_t kWordsColumn = 38;
constexpr std::size_t kMostColumns = 100;

std::string HexOf(std::span<const std::uint8_t> bytes) {
  return Hex({reinterpret_cast<const char*>(bytes.data()), bytes.size()});
}

Lines TransferLines(const capture::Transfer& transfer) {
  const bool isWrite = transfer.direction == capture::Direction::kToScanner;
  const std::string margin = isWrite ? "> " : "< ";
  const std::span<const std::uint8_t> bytes{*transfer.bytes};
  const bool isCut = bytes.size() > kMostBytes;
  Lines lines;
  for (std::size_t i = 0; i < (isCut ? kRowBytes : bytes.size()); i += kRowBytes) {
    const auto row = bytes.subspan(i, std::min(kRowBytes, bytes.size() - i));
    lines.push_back((lines.empty() ? margin : "  ") + HexOf(row));
  }
  if (isCut) lines.back() += " ... " + std::to_string(bytes.size()) + " bytes";
  return lines;
}

// A block's data are not shown; behind those of an extended scanner comes a status byte.
std::string BlockLine(const capture::Transfer& transfer, const capture::PictureBlock& block,
                      bool isExtended) {
  const std::string line = "< " + std::to_string(block.bytes) + " bytes";
  if (!isExtended) return line;
  const std::uint8_t status =
      transfer.bytes.has_value() ? transfer.bytes->back() : transfer.lastByte;
  return line + ", " + Hex(std::string(1, static_cast<char>(status)));
}

// A single value needs no name but the command's.
std::string ParametersText(const pmddb832::CommandShape& command,
                           const std::vector<std::uint8_t>& block) {
  const std::vector<capture::FieldRow> rows = capture::DescribeParameters(command, block);
  return rows.size() == 1 ? rows.front().value : capture::Joined(rows);
}

bool Begins(Part part) {
  return part == Part::kCommand || part == Part::kUnknown || part == Part::kControl ||
         part == Part::kBlockHeader || part == Part::kBlock || part == Part::kStray;
}

Lines Wrapped(const std::string& words, const std::string& margin) {
  Lines lines;
  std::istringstream stream(words);
  for (std::string word; stream >> word;) {
    if (lines.empty() || lines.back().size() + 1 + word.size() > kMostColumns) {
      lines.push_back(margin + word);
    } else {
      lines.back() += " " + word;
    }
  }
  return lines;
}

}  // namespace

void ExchangeReader::Take(const capture::Transfer& transfer) {
  const Part part = capture::Follow(conversation_, transfer);
  Begin(part, transfer);
  Tell(part, transfer);
}

void ExchangeReader::Begin(Part part, const capture::Transfer& transfer) {
  const bool goesOn = part == Part::kBlock && isHeaderOpen_;
  isHeaderOpen_ = part == Part::kBlockHeader;
  if (!exchanges_.empty() && (goesOn || !Begins(part))) return;
  const bool isCommand = part == Part::kCommand;
  exchanges_.push_back({isCommand ? capture::Letters(*conversation_.Command()) : "", "", {}});
  if (isCommand) {
    exchanges_.back().words = capture::NameOf(*conversation_.Command());
  } else if (part == Part::kControl) {
    exchanges_.back().words = capture::ControlName(transfer.bytes->front()).value_or("");
  } else if (part == Part::kBlockHeader) {
    exchanges_.back().words = "header of no block";  // until the block comes
  }
}

void ExchangeReader::Tell(Part part, const capture::Transfer& transfer) {
  Exchange& exchange = exchanges_.back();
  if (part == Part::kBlock) {
    const capture::PictureBlock& block = conversation_.Picture()->Block();
    const bool isExtended = conversation_.Command()->prefix == pmddb832::kFs;
    exchange.transfers.push_back(BlockLine(transfer, block, isExtended));
    exchange.words = "block " + std::to_string(block.number) + ": " + std::to_string(block.lines) +
                     (block.lines == 1 ? " line" : " lines");
    return;
  }
  const Lines lines = TransferLines(transfer);
  exchange.transfers.insert(exchange.transfers.end(), lines.begin(), lines.end());
  const bool refuses = part == Part::kAcknowledge && transfer.bytes->front() != pmddb832::kAck;
  if (refuses) exchange.words += ": refused";
  if ((part != Part::kParameters && part != Part::kReply) || !conversation_.IsWhole()) return;
  const pmddb832::CommandShape& command = *conversation_.Command();
  exchange.words =
      capture::NameOf(command) + ": " +
      (part == Part::kParameters
           ? ParametersText(command, conversation_.Message())
           : capture::Joined(capture::DescribeReply(command.reply, conversation_.Message())));
}

std::vector<Exchange> ExchangeReader::Release() {
  return std::exchange(exchanges_, {});
}

std::vector<std::string> LinesOf(const Exchange& exchange) {
  Lines lines;
  bool isShort = false;
  for (const std::string& transfer : exchange.transfers) {
    const bool joins = isShort && transfer.size() <= kShortTransfer &&
                       lines.back().size() + 2 + transfer.size() < kWordsColumn;
    isShort = transfer.size() <= kShortTransfer;
    if (joins) {
      lines.back() += "  " + transfer;
    } else {
      lines.push_back(transfer);
    }
  }
  const bool fits = lines.size() == 1 && lines[0].size() < kWordsColumn - 1 &&
                    kWordsColumn + exchange.words.size() <= kMostColumns;
  if (fits) {
    lines[0].resize(kWordsColumn, ' ');
    lines[0] += exchange.words;
    return lines;
  }
  const Lines words = Wrapped(exchange.words, "    ");
  lines.insert(lines.end(), words.begin(), words.end());
  return lines;
}

}  // namespace documents
