#pragma once

#include "pmscan/scan/module_exports.h"
#include "tests/scans/module_under_test.h"

namespace pmddb832::tests {

// The module under test, as pmscan calls it.
pmscan::ModuleExports ExportsOf(const ModuleUnderTest& module);

}  // namespace pmddb832::tests
