#pragma once

#include "interface/exports.h"

namespace pmddb832::tests {

// The module's exports, by their names without the prefix.
struct ModuleExports {
  decltype(&PMOpenScanner) OpenScanner;
  decltype(&PMSetScannerHardware) SetScannerHardware;
  decltype(&PMInitAcquire) InitAcquire;
  decltype(&PMAcquireImage) AcquireImage;
  decltype(&PMAbortScan) AbortScan;
  decltype(&PMCloseScanner) CloseScanner;
  decltype(&PMGetOptionStatus) GetOptionStatus;
  decltype(&PMEject) Eject;
  decltype(&PMFeed) Feed;
  decltype(&PMReset) Reset;
  decltype(&PMSetFocus) SetFocus;
  decltype(&PMEnableOption) EnableOption;
  decltype(&PMGetScanPaperSize) GetScanPaperSize;
  decltype(&PMGetScanError) GetScanError;
};

// The module, loaded by its first user and unloaded at the end of the scope: the built DLL on
// Windows, the same sources linked in natively.
class ModuleUnderTest {
 public:
  ModuleUnderTest();
  ~ModuleUnderTest();
  ModuleUnderTest(const ModuleUnderTest&) = delete;
  ModuleUnderTest& operator=(const ModuleUnderTest&) = delete;

  const ModuleExports* operator->() const { return &exports_; }

 private:
  ModuleExports exports_{};
  void* library_ = nullptr;
};

}  // namespace pmddb832::tests
