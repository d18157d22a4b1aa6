#include "tests/scans/pmscan_module.h"

namespace pmddb832::tests {

pmscan::ModuleExports ExportsOf(const ModuleUnderTest& module) {
  pmscan::ModuleExports exports;
  exports.openScanner = module->OpenScanner;
  exports.closeScanner = module->CloseScanner;
  exports.initAcquire = module->InitAcquire;
  exports.acquireImage = module->AcquireImage;
  exports.abortScan = module->AbortScan;
  exports.getOptionStatus = module->GetOptionStatus;
  exports.enableOption = module->EnableOption;
  exports.getScanPaperSize = module->GetScanPaperSize;
  exports.getScanError = module->GetScanError;
  exports.setScannerHardware = module->SetScannerHardware;
  exports.eject = module->Eject;
  exports.feed = module->Feed;
  exports.reset = module->Reset;
  exports.setFocus = module->SetFocus;
  return exports;
}

}  // namespace pmddb832::tests
