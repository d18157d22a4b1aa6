#include "capture/decode/decode_calls.h"

#include <array>
#include <span>
#include <string_view>

#include "capture/file/settings_text.h"
#include "wire/value_names.h"

namespace capture {
namespace {

using pmddb832::ValueName;
namespace names = pmddb832::names;

constexpr std::array kOpenResults{ValueName{0, "failed", true}, ValueName{1, "open"}};
constexpr std::array kAnswers{ValueName{0, "not acknowledged", true}, ValueName{1, "acknowledged"}};
constexpr std::array kAcquisition{ValueName{1, "go on"}, ValueName{2, "failed", true}};
constexpr std::array kFreshBuffer{ValueName{3, "fresh buffer"}};
constexpr std::array kFocusModes{ValueName{0, "manual"}, ValueName{1, "automatic"}};

// Values of a call that have names: arguments and results apart.
struct NamedValue {
  std::string_view call;
  std::string_view value;
  std::span<const ValueName> names;
};

constexpr std::array kNamedArguments{
    NamedValue{"PMAcquireImage", "status", kFreshBuffer},
    NamedValue{"PMGetOptionStatus", "option", names::kDocumentSources},
    NamedValue{"PMGetScanPaperSize", "option", names::kDocumentSources},
    NamedValue{"PMSetFocus", "mode", kFocusModes},
};

constexpr std::array kNamedResults{
    NamedValue{"PMOpenScanner", "result", kOpenResults},
    NamedValue{"PMInitAcquire", "status", kAcquisition},
    NamedValue{"PMAcquireImage", "status", kAcquisition},
    NamedValue{"PMGetOptionStatus", "result", names::kErrorCodes},
    NamedValue{"PMGetScanPaperSize", "result", names::kErrorCodes},
    NamedValue{"PMGetScanError", "result", names::kErrorCodes},
    NamedValue{"PMReset", "result", kAnswers},
    NamedValue{"PMEnableOption", "result", kAnswers},
};

std::span<const ValueName> NamesOf(std::span<const NamedValue> table, std::string_view call,
                                   std::string_view value) {
  for (const NamedValue& row : table) {
    if (row.call == call && row.value == value) return row.names;
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
  std::string text;
  for (const Value& value : call.arguments) {
    text.append(text.empty() ? "" : ", ");
    text.append(Describe(value, NamesOf(kNamedArguments, call.name, value.name)).OneLine());
  }
  return text;
}

std::vector<FieldRow> DescribeResults(const CallEnd& call) {
  std::vector<FieldRow> rows;
  for (const Value& value : call.results) {
    rows.push_back(Describe(value, NamesOf(kNamedResults, call.name, value.name)));
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
