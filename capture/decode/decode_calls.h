#pragma once

#include <string>
#include <vector>

#include "capture/decode/decode_fields.h"
#include "capture/file/capture.h"

namespace capture {

// What went into a call: "outputFormat 5, option document feeder (0)". Empty for none.
std::string DescribeArguments(const CallBegin& call);

// What came out of it, each value a row; a value that tells of a failure is marked.
std::vector<FieldRow> DescribeResults(const CallEnd& call);

// Members of the settings record with their new values: "resolution 300, gamma 100".
std::string DescribeChanges(const std::vector<SettingsChange>& changes);

}  // namespace capture
