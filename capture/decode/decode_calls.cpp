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

std::span<const ValueName> NamesOf(std::span<const ValueShape> values, std::string_view name) {
  for (const ValueShape& value : values) {
    if (value.name == name) return value.names;
  }
  return {};
}

FieldRow Describe(const Value& value, std::span<const ValueShape> values) {
  // A call has one result, or several values with names.
  const std::string name = value.name == "result" ? "" : value.name;
  const std::string number = std::to_string(value.value);
  for (const ValueName& row : NamesOf(values, value.name)) {
    if (row.value != value.value) continue;
    return {name, std::string(row.name) + " (" + number + ")", row.isTrouble};
  }
  return {name, number};
}

std::vector<FieldRow> Describe(const std::vector<Value>& told, std::span<const ValueShape> values) {
  std::vector<FieldRow> rows;
  rows.reserve(told.size());
  for (const Value& value : told) rows.push_back(Describe(value, values));
  return rows;
}

}  // namespace

std::string DescribeArguments(const CallBegin& call) {
  return Joined(Describe(call.arguments, RowOf(call.name).arguments));
}

std::vector<FieldRow> DescribeResults(const CallEnd& call) {
  return Describe(call.results, RowOf(call.name).results);
}

std::string DescribeChanges(const std::vector<SettingsChange>& changes) {
  std::vector<FieldRow> rows;
  for (const SettingsChange& change : changes) {
    const std::string value = ValueText(change);
    const std::string count = std::to_string(change.bytes.size()) + " bytes";
    rows.push_back({std::string(FieldAt(change.offset).name), value.empty() ? count : value});
  }
  return Joined(rows);
}

}  // namespace capture
