#include "tests/scans/module_under_test.h"

namespace pmddb832::tests {
namespace {

constexpr std::uint32_t kProcessDetach = 0;
constexpr std::uint32_t kProcessAttach = 1;

}  // namespace

ModuleUnderTest::ModuleUnderTest()
    : exports_{PMOpenScanner,
               PMSetScannerHardware,
               PMInitAcquire,
               PMAcquireImage,
               PMAbortScan,
               PMCloseScanner,
               PMGetOptionStatus,
               PMEject,
               PMFeed,
               PMReset,
               PMSetFocus,
               PMEnableOption,
               PMGetScanPaperSize,
               PMGetScanError},
      library_(this) {
  DllMain(library_, kProcessAttach, nullptr);
}

ModuleUnderTest::~ModuleUnderTest() {
  DllMain(library_, kProcessDetach, nullptr);
}

}  // namespace pmddb832::tests
