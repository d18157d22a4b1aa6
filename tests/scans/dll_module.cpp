#define WIN32_LEAN_AND_MEAN
#include <windows.h>

#include <stdexcept>
#include <string>

#include "tests/scans/call_guard.h"
#include "tests/scans/module_under_test.h"

namespace pmddb832::tests {
namespace {

template <class Export>
void Find(void* library, const char* name, Export& entry) {
  const FARPROC found = GetProcAddress(static_cast<HMODULE>(library), name);
  if (found == nullptr)
    throw std::runtime_error(std::string("Pmddb832.dll does not export ") + name);
  entry = reinterpret_cast<Export>(reinterpret_cast<void*>(found));
}

}  // namespace

ModuleUnderTest::ModuleUnderTest() : library_(LoadLibraryA(PMDDB832_DLL)) {
  if (library_ == nullptr) {
    throw std::runtime_error(PMDDB832_DLL " cannot be loaded: Windows error " +
                             std::to_string(GetLastError()));
  }
  GuardCalls(library_);
  Find(library_, "PMOpenScanner", exports_.OpenScanner);
  Find(library_, "PMSetScannerHardware", exports_.SetScannerHardware);
  Find(library_, "PMInitAcquire", exports_.InitAcquire);
  Find(library_, "PMAcquireImage", exports_.AcquireImage);
  Find(library_, "PMAbortScan", exports_.AbortScan);
  Find(library_, "PMCloseScanner", exports_.CloseScanner);
  Find(library_, "PMGetOptionStatus", exports_.GetOptionStatus);
  Find(library_, "PMEject", exports_.Eject);
  Find(library_, "PMFeed", exports_.Feed);
  Find(library_, "PMReset", exports_.Reset);
  Find(library_, "PMSetFocus", exports_.SetFocus);
  Find(library_, "PMEnableOption", exports_.EnableOption);
  Find(library_, "PMGetScanPaperSize", exports_.GetScanPaperSize);
  Find(library_, "PMGetScanError", exports_.GetScanError);
}

ModuleUnderTest::~ModuleUnderTest() {
  FreeLibrary(static_cast<HMODULE>(library_));
}

}  // namespace pmddb832::tests
