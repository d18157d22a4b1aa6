#pragma once

#include "imaging/scan_plan.h"
#include "standard/scanner_facts.h"
#include "transport/general_cmd.h"

namespace pmddb832::Scmdnt {

// Uploads the settings for the plan of a scanner that was identified, and plans what of the area is
// sent. Whether the scanner acknowledges a command is not looked at: the sequence goes on, and the
// host sees the last error only: kTooLarge, kOriginBeyondLimits, kAreaBeyondLimits, kEmptyLine, or
// what it was before.
void UpdateSettings(GeneralCmd& scanner, Call& call, const StdScannerFacts& facts, ScanPlan& plan);

}  // namespace pmddb832::Scmdnt
