#include "capture/replay/transfer_text.h"

#include <algorithm>

#include "capture/decode/decode_commands.h"
#include "capture/file/capture_writer.h"

namespace capture {
namespace {

using Bytes = std::span<const std::uint8_t>;
using pmddb832::CommandShape;
using pmddb832::FindCommand;

constexpr std::size_t kMostRows = 8;

// "FS W set parameters", "ACK"; empty for bytes that have no name.
std::string NameOf(Bytes bytes) {
  if (bytes.size() == 1) return ControlName(bytes[0]).value_or("");
  const CommandShape* const command = FindCommand(bytes);
  return command == nullptr ? "" : capture::NameOf(*command);
}

// The command whose parameters stand at the entry; null when none is in front of it.
const CommandShape* CommandBefore(const Capture& capture, std::size_t entry) {
  for (std::size_t i = std::min(entry, capture.entries.size()); i-- > 0;) {
    const auto* const transfer = std::get_if<Transfer>(&capture.entries[i]);
    if (transfer == nullptr || transfer->direction != Direction::kToScanner) continue;
    return FindCommand(transfer->Kept());
  }
  return nullptr;
}

std::string DifferentFields(const CommandShape& command, Bytes expected, Bytes came) {
  const std::vector<FieldRow> before = DescribeParameters(command, expected);
  const std::vector<FieldRow> after = DescribeParameters(command, came);
  std::string text;
  for (std::size_t i = 0; i < std::min(before.size(), after.size()); ++i) {
    if (before[i].value == after[i].value) continue;
    text += Letters(command) + ", " + before[i].name + ": expected " + before[i].value + ", came " +
            after[i].value + "\n";
  }
  return text;
}

std::string FirstDifferentByte(Bytes expected, Bytes came) {
  const auto [before, after] =
      std::mismatch(expected.begin(), expected.end(), came.begin(), came.end());
  if (before == expected.end() || after == came.end()) return {};
  return "the first difference is at byte " + std::to_string(before - expected.begin()) +
         ", counted from 0: expected " + HexNumber(*before) + ", came " + HexNumber(*after) + "\n";
}

std::string Meaning(const char* label, Bytes bytes) {
  const std::string name = NameOf(bytes);
  return name.empty() ? std::string() : label + name + "\n";
}

}  // namespace

std::string TransferText(const Transfer& transfer) {
  const std::string text = EntryText(transfer);
  std::size_t end = 0;
  for (std::size_t row = 0; row <= kMostRows && end != std::string::npos; ++row) {
    end = text.find('\n', end + 1);
  }
  return end == std::string::npos ? text : text.substr(0, end) + "\n    ...";
}

std::string ExplainWrites(const Capture& capture, std::size_t entry, const Transfer* expected,
                          Bytes came) {
  const bool expectsWrite = expected != nullptr && expected->direction == Direction::kToScanner;
  const Bytes wanted = expectsWrite ? expected->Kept() : Bytes();
  std::string names = Meaning("expected: ", wanted) + Meaning("came: ", came);
  if (!names.empty()) return names;
  const CommandShape* const command = CommandBefore(capture, entry);
  if (command != nullptr && command->parameterBytes == came.size()) {
    std::string fields = DifferentFields(*command, wanted, came);
    if (!fields.empty()) return fields;
  }
  return FirstDifferentByte(wanted, came);
}

}  // namespace capture
