#include <array>

#include "tests/documents/table.h"
#include "wire/command_level.h"
#include "wire/command_table.h"
#include "wire/focus.h"
#include "wire/reply_shapes.h"

namespace documents {
namespace {

using namespace pmddb832;

std::string Letter(std::uint8_t letter) {
  return {static_cast<char>(letter)};
}

std::string NameOf(const CommandShape& command) {
  return (command.prefix == kEsc ? "ESC " : "FS ") + Letter(command.letter);
}

Row CommandCells(const CommandShape& command) {
  const std::string bytes{static_cast<char>(command.prefix), static_cast<char>(command.letter)};
  return {NameOf(command), Code(Hex(bytes)), std::string(command.name)};
}

std::string ValuesOf(const NamedField& field) {
  switch (field.shape) {
    case FieldShape::kText:
      return "characters";
    case FieldShape::kSigned:
      return "signed";
    case FieldShape::kPosition:
      return "position + " + HexNumber(kFocusOffset);
    case FieldShape::kChoice:
    case FieldShape::kFlags:
      break;
    default:
      return field.unit.empty() ? "number" : std::string(field.unit);
  }
  std::vector<std::string> values;
  for (const ValueName& value : field.names) {
    values.push_back(HexNumber(value.value) + " " + std::string(value.name));
  }
  return Join(values, "; ");
}

Table FieldTable(std::string_view name, std::span<const NamedField> fields) {
  Table table{std::string(name), {"Offset", "Bytes", "Field", "Values"}, {}};
  for (const NamedField& field : fields) {
    table.rows.push_back({std::to_string(field.offset), std::to_string(field.width),
                          std::string(field.name), ValuesOf(field)});
  }
  return table;
}

Table ControlBytes() {
  Table table{"control-bytes", {"Byte", "Name"}, {{HexNumber(kStx), "STX"}}};
  for (const ValueName& row : names::kControlBytes) {
    table.rows.push_back({HexNumber(row.value), std::string(row.name)});
  }
  table.rows.push_back({HexNumber(kEsc), "ESC"});
  table.rows.push_back({HexNumber(kFs), "FS"});
  return table;
}

std::string ReplyText(const CommandShape& command) {
  const ReplyShape& shape = ReplyShapeOf(command.reply);
  if (command.reply == ReplyKind::kAcknowledge) return "ACK";
  const std::string bytes = std::to_string(shape.firstRead) + " bytes";
  return shape.declaresData ? bytes + " and data" : bytes;
}

std::string ParameterText(const CommandShape& command) {
  if (command.parameterBytes == 0) return "–";
  std::vector<std::string> fields;
  for (const NamedField& field : command.parameters) fields.emplace_back(field.name);
  const std::string bytes = std::to_string(command.parameterBytes);
  const bool isBlock = command.parameterBytes == sizeof(ParameterBlock);
  const std::string text = Join(fields, ", ");
  return isBlock || text.empty() ? bytes : bytes + ": " + text;
}

Table ExtendedCommands() {
  Table table{"extended-commands", {"Command", "Bytes", "Name", "Parameters", "Answer"}, {}};
  for (const CommandShape& command : kCommandTable) {
    if (command.prefix != kFs) continue;
    Row row = CommandCells(command);
    row.insert(row.end(), {ParameterText(command), ReplyText(command)});
    table.rows.push_back(row);
  }
  return table;
}

struct NamedLevel {
  std::string_view name;
  char letter;
  char digit;

  const LevelTraits& Traits() const { return TraitsOf(StandardLevelCode(letter, digit)); }
};
constexpr std::array kNamedLevels{NamedLevel{"B3", 'B', '3'}, NamedLevel{"B4", 'B', '4'},
                                  NamedLevel{"B5", 'B', '5'}, NamedLevel{"A5", 'A', '5'},
                                  NamedLevel{"B6", 'B', '6'}, NamedLevel{"B7", 'B', '7'},
                                  NamedLevel{"B8", 'B', '8'}};

// Levels that are sent the command; all for a letter that is not listed.
struct LetterOfLevels {
  std::uint8_t letter;
  bool (*isSent)(const NamedLevel& level);
};

using Level = const NamedLevel&;
constexpr std::array kLettersOfLevels{
    LetterOfLevels{esc::kLinesPerBlock,
                   [](Level level) { return SendsLinesInBlocks(level.digit); }},
    LetterOfLevels{esc::kStatus, [](Level level) { return level.Traits().status; }},
    LetterOfLevels{esc::kSharpness, [](Level level) { return level.Traits().status; }},
    LetterOfLevels{esc::kParamG, [](Level level) { return level.Traits().status; }},
    LetterOfLevels{esc::kGammaTable, [](Level level) { return level.Traits().gammaTables != 0; }},
    LetterOfLevels{esc::kColorCorrection,
                   [](Level level) { return level.Traits().colorCorrection; }},
    LetterOfLevels{esc::kColorMatrix, [](Level level) { return level.Traits().colorMatrix; }},
    LetterOfLevels{esc::kEnhancement, [](Level level) { return level.Traits().enhancement; }},
    LetterOfLevels{esc::kMirror, [](Level level) { return level.Traits().mirror; }},
    LetterOfLevels{esc::kThreshold, [](Level level) { return level.Traits().threshold; }},
    LetterOfLevels{esc::kFocusPosition, [](Level level) { return level.Traits().focus; }},
    LetterOfLevels{esc::kFocusFound, [](Level level) { return level.Traits().focus; }},
};

std::string LevelsOf(const CommandShape& command) {
  for (const LetterOfLevels& row : kLettersOfLevels) {
    if (row.letter != command.letter) continue;
    std::vector<std::string> with;
    std::vector<std::string> without;
    for (const NamedLevel& level : kNamedLevels) {
      (row.isSent(level) ? with : without).emplace_back(level.name);
    }
    return with.size() > without.size() ? "all but " + Join(without, " ") : Join(with, " ");
  }
  return "all";
}

Table StandardCommands() {
  Table table{
      "standard-commands", {"Command", "Bytes", "Name", "Parameters", "Answer", "Levels"}, {}};
  for (const CommandShape& command : kCommandTable) {
    if (command.prefix != kEsc) continue;
    Row row = CommandCells(command);
    row.insert(row.end(), {ParameterText(command), ReplyText(command), LevelsOf(command)});
    table.rows.push_back(row);
  }
  return table;
}

Table StandardParameters() {
  Table table{"standard-parameters", {"Parameter", "Offset", "Bytes", "Values"}, {}};
  for (const CommandShape& command : kCommandTable) {
    if (command.prefix != kEsc) continue;
    for (const NamedField& field : command.parameters) {
      table.rows.push_back({NameOf(command) + " " + std::string(field.name),
                            std::to_string(field.offset), std::to_string(field.width),
                            ValuesOf(field)});
    }
  }
  return table;
}

}  // namespace

std::vector<Table> WireTables() {
  std::vector<Table> tables{ControlBytes(), ExtendedCommands(), StandardCommands(),
                            StandardParameters(),
                            FieldTable("parameter-block", parameter::kFields)};
  for (const ReplyShape& shape : kReplyShapes) {
    if (shape.fields.empty()) continue;
    tables.push_back(FieldTable("reply-" + std::string(shape.name), shape.fields));
  }
  return tables;
}

}  // namespace documents
