#pragma once

#include <algorithm>
#include <array>
#include <span>
#include <string_view>

#include "wire/value_names.h"

// The module's exports, with the numbers that go into a call and come out of it. What records,
// plays back or tells a call takes their names from here.
namespace capture {

// A number that goes into a call or comes out of it: what a call has of it is a Value.
struct ValueShape {
  std::string_view name;
  std::span<const pmddb832::ValueName> names = {};  // of its values; most numbers have none
};

struct ExportRow {
  std::string_view name;
  // In the order of the function's parameters, of a record or an area in that of its members.
  // Those that the call also fills are among the results.
  std::span<const ValueShape> arguments;
  std::span<const ValueShape> results;
  bool fetchesImage = false;  // the call may read blocks of the picture
};

namespace calls {

using pmddb832::ValueName;
namespace names = pmddb832::names;

inline constexpr std::array kOpenNames{ValueName{0, "failed", true}, ValueName{1, "open"}};
inline constexpr std::array kAnswerNames{ValueName{0, "not acknowledged", true},
                                         ValueName{1, "acknowledged"}};
inline constexpr std::array kAcquisitionNames{ValueName{1, "go on"}, ValueName{2, "failed", true}};
inline constexpr std::array kFreshBufferNames{ValueName{3, "fresh buffer"}};
inline constexpr std::array kFocusModeNames{ValueName{0, "manual"}, ValueName{1, "automatic"}};

inline constexpr std::array kResult{ValueShape{"result"}};
inline constexpr std::array kOpenResult{ValueShape{"result", kOpenNames}};
inline constexpr std::array kAnswerResult{ValueShape{"result", kAnswerNames}};
inline constexpr std::array kErrorResult{ValueShape{"result", names::kErrorCodes}};
inline constexpr std::array kOption{ValueShape{"option", names::kDocumentSources}};
inline constexpr std::array kValue{ValueShape{"value"}};
inline constexpr std::array kFocus{ValueShape{"mode", kFocusModeNames}, ValueShape{"position"}};
inline constexpr std::array kSetupArguments{ValueShape{"outputFormat"}, ValueShape{"progress"},
                                            ValueShape{"status"},       ValueShape{"lineBytes"},
                                            ValueShape{"widthPixels"},  ValueShape{"heightLines"}};
inline constexpr std::array kSetupResults{ValueShape{"status", kAcquisitionNames},
                                          ValueShape{"lineBytes"}, ValueShape{"widthPixels"},
                                          ValueShape{"heightLines"}};
inline constexpr std::array kBandArguments{
    ValueShape{"bufferBytes"}, ValueShape{"status", kFreshBufferNames}, ValueShape{"done"},
    ValueShape{"lines"}, ValueShape{"bytes"}};
inline constexpr std::array kBandResults{ValueShape{"status", kAcquisitionNames},
                                         ValueShape{"done"}, ValueShape{"lines"},
                                         ValueShape{"bytes"}};
inline constexpr std::array kPaperSizeArguments{ValueShape{"option", names::kDocumentSources},
                                                ValueShape{"widthPixels"},
                                                ValueShape{"heightPixels"}};
inline constexpr std::array kPaperSizeResults{ValueShape{"result", names::kErrorCodes},
                                              ValueShape{"widthPixels"},
                                              ValueShape{"heightPixels"}};

}  // namespace calls

inline constexpr std::array kExports{
    ExportRow{"PMOpenScanner", {}, calls::kOpenResult},
    ExportRow{"PMSetScannerHardware", {}, {}},
    ExportRow{"PMInitAcquire", calls::kSetupArguments, calls::kSetupResults},
    ExportRow{"PMAcquireImage", calls::kBandArguments, calls::kBandResults, true},
    ExportRow{"PMAbortScan", {}, {}, true},  // it may take what is on the way
    ExportRow{"PMCloseScanner", {}, {}},
    ExportRow{"PMGetOptionStatus", calls::kOption, calls::kErrorResult},
    ExportRow{"PMEject", {}, {}},
    ExportRow{"PMFeed", {}, {}},
    ExportRow{"PMReset", {}, calls::kAnswerResult},
    ExportRow{"PMSetFocus", calls::kFocus, calls::kResult},
    ExportRow{"PMEnableOption", calls::kValue, calls::kAnswerResult},
    ExportRow{"PMGetScanPaperSize", calls::kPaperSizeArguments, calls::kPaperSizeResults},
    ExportRow{"PMGetScanError", {}, calls::kErrorResult},
};

// Null when the module has no such export.
constexpr const ExportRow* ExportOf(std::string_view name) {
  const auto* const row = std::find_if(kExports.begin(), kExports.end(),
                                       [name](const ExportRow& one) { return one.name == name; });
  return row == kExports.end() ? nullptr : row;
}

}  // namespace capture
