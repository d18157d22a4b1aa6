// A host as Visual Studio builds it, with nothing but the module: its compiler's conventions, its
// linker, and no C library. Ends with 0 when every export does what it should while nothing is open.

#include <stddef.h>

#include "pmddb832.h"

int Main(void) {
  uint32_t width = 0;
  uint32_t height = 0;
  PMSetScannerHardware(NULL);
  PMInitAcquire(0, NULL, NULL);
  PMAcquireImage(NULL, 0, NULL);
  PMAbortScan();
  PMCloseScanner();
  PMEject(NULL);
  PMFeed(NULL);
  if (PMOpenScanner(NULL) != 0) return 1;
  if (PMGetOptionStatus(2) != 0) return 2;
  if (PMReset() != 0) return 3;
  if (PMSetFocus(0, 0) != 0) return 4;
  if (PMEnableOption(0) != 0) return 5;
  if (PMGetScanPaperSize(0, &width, &height) != 0) return 6;
  return (int)PMGetScanError();
}
