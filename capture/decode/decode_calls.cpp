#include "capture/decode/decode_calls.h"

#include <span>
#include <string_view>

#include "capture/calls/export_table.h"
#include "capture/file/settings_text.h"

namespace capture {
namespace {

using pmddb832::ValueName;

// One without values for a call that the module does not have.
ExportRow RowOf(std::string_view call) {
  const ExportRow* const row = ExportOf(call);
  return row == nullptr ? ExportRow{} : *row;
}

std::span<const ValueName> NamesOf(std::span<const CallValue> values, std::string_view name) {
  for (const CallValue& value : values) {
    if (value.name == name) return value.names;
  }
  return {};
}

// A call has one result, or several values with names.
std::string NameOf(const Value& value) {
  return value.name == "result" ? "" : value.name;
}

FieldRow Describe(const Value& value, std::span<const ValueName> valueNames) {
  for (const ValueName& row : valueNames) {
    if (row.value != value.value) continue;
    const std::string number = std::to_string(value.value);
    return {NameOf(value), std::string(row.name) + " (" + number + ")", row.isTrouble};
  }
  return {NameOf(value), std::to_string(value.value)};
}

std::string ChangeText(const RecordChange& change) {
  const std::string value = ValueText(change);
  const std::string count = std::to_string(change.bytes.size()) + " bytes";
  return std::string(FieldAt(change.offset).name) + " " + (value.empty() ? count : value);
}

}  // namespace

std::string DescribeArguments(const CallBegin& call) {
  const ExportRow row = RowOf(call.name);
  std::string text;
  for (const Value& value : call.arguments) {
    text.append(text.empty() ? "" : ", ");
    text.append(Describe(value, NamesOf(row.arguments, value.name)).OneLine());
  }
  return text;
}

std::vector<FieldRow> DescribeResults(const CallEnd& call) {
  const ExportRow row = RowOf(call.name);
  std::vector<FieldRow> rows;
  for (const Value& value : call.results) {
    rows.push_back(Describe(value, NamesOf(row.results, value.name)));
  }
  return rows;
}

std::string DescribeChanges(const std::vector<RecordChange>& changes) {
  std::string text;
  for (const RecordChange& change : changes) {
    text.append(text.empty() ? "" : ", ").append(ChangeText(change));
  }
  return text;
}

}  // namespace capture
