#include "capture/decode/decode_commands.h"

#include "capture/file/number_text.h"
#include "wire/value_names.h"

namespace capture {
namespace {

using pmddb832::CommandShape;

std::string TableText(std::span<const std::uint8_t> table) {
  if (table.empty()) return "0 values";
  std::size_t i = 0;
  while (i < table.size() && table[i] == i) ++i;
  const std::string count = Counted(table.size(), "value");
  if (i == table.size()) return count + ", straight";
  return count + " from " + std::to_string(table.front()) + " over " +
         std::to_string(table[table.size() / 2]) + " to " + std::to_string(table.back());
}

std::string MatrixText(std::span<const std::uint8_t> matrix) {
  std::string text;
  for (const std::uint8_t factor : matrix) {
    text.append(text.empty() ? "" : " ");
    text.append(std::to_string(static_cast<std::int8_t>(factor)));
  }
  return text;
}

}  // namespace

std::string Letters(const CommandShape& command) {
  return (command.prefix == pmddb832::kEsc ? "ESC " : "FS ") +
         std::string(1, static_cast<char>(command.letter));
}

std::string NameOf(const CommandShape& command) {
  return Letters(command) + " " + std::string(command.name);
}

std::optional<std::string> ControlName(std::uint8_t byte) {
  for (const pmddb832::ValueName& row : pmddb832::names::kControlBytes) {
    if (row.value == byte) return std::string(row.name);
  }
  return std::nullopt;
}

std::vector<FieldRow> DescribeParameters(const CommandShape& command,
                                         std::span<const std::uint8_t> block) {
  std::vector<FieldRow> rows = DescribeFields(command.parameters, block);
  if (command.parameterBytes == pmddb832::kGammaTableBytes && !block.empty()) {
    rows.push_back({"table", TableText(block.subspan(1))});
  } else if (command.parameterBytes == pmddb832::kColorMatrixBytes) {
    rows.push_back({"matrix", MatrixText(block)});
  } else if (const std::string other = DescribeOtherBytes(command.parameters, block);
             !other.empty()) {
    rows.push_back({"bytes that must be 0", other, true});
  }
  return rows;
}

}  // namespace capture
