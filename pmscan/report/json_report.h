#pragma once

#include <cstdint>
#include <nlohmann/json_fwd.hpp>
#include <string>
#include <vector>

#include "pmscan/command_line/failure.h"
#include "pmscan/report/report.h"

namespace pmscan {

// The reports as JSON; docs/pmscan.md describes them member by member. Lengths in hundredths of an
// inch where the name says nothing else. Bytes that are not UTF-8 are replaced when it is printed.
using Json = nlohmann::ordered_json;

// What all reports on a scanner have: model, product, level and commands.
Json IdentityJson(const ScannerFacts& scanner);

Json ScannerJson(const ScannerFacts& scanner);

Json ScanJson(const ScannerFacts& scanner, const ScanSource& source, const ScanRequest& request,
              const ScanOutcome& outcome);

Json FailureJson(const Failure& failure);

// The document as it is printed, with a line feed at the end.
std::string JsonText(const Json& document);

}  // namespace pmscan
