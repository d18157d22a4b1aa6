// The header for hosts, read as C: what it says of the records is what the module means.

#include <assert.h>
#include <stddef.h>

#include "pmddb832.h"

#define MEMBER(name, offset, width)                                    \
  static_assert(offsetof(PMScannerSettings, name) == (offset), #name); \
  static_assert(sizeof(((PMScannerSettings*)0)->name) == (width), #name)

static_assert(sizeof(PMScannerSettings) == 1872, "settings record");
MEMBER(commandLevel, 0, 4);
MEMBER(commandLevelText, 4, 3);
MEMBER(modelName, 8, 8);
MEMBER(docFeedOption, 16, 4);
MEMBER(areaCount, 24, 2);
MEMBER(bedWidth, 28, 4);
MEMBER(bedHeight, 32, 4);
MEMBER(optionWidth, 36, 4);
MEMBER(optionHeight, 40, 4);
MEMBER(levelGroup, 80, 2);
MEMBER(halftoneInfo, 82, 2);
MEMBER(minResolution, 84, 2);
MEMBER(baseResolution, 86, 2);
MEMBER(maxResolution, 88, 2);
MEMBER(scanInfoVariant, 164, 2);
MEMBER(dropoutChannel, 172, 2);
MEMBER(pixelType, 176, 4);
MEMBER(zoom, 184, 2);
MEMBER(resolution, 186, 2);
MEMBER(originX, 208, 8);
MEMBER(originY, 216, 8);
MEMBER(invertMono, 226, 1);
MEMBER(brightness, 228, 4);
MEMBER(halftoneIndex, 240, 4);
MEMBER(sharpness, 244, 4);
MEMBER(gamma, 250, 2);
MEMBER(paramG, 252, 1);
MEMBER(altColorMode, 256, 4);
MEMBER(whitePadding, 260, 2);
MEMBER(scanSource, 264, 1);
MEMBER(customGamma, 268, 4);
MEMBER(colorCorrection, 276, 4);
MEMBER(halftoneOverride, 280, 4);
MEMBER(optionS, 284, 4);
MEMBER(mirrorImage, 288, 4);
MEMBER(keepPaper, 296, 4);
MEMBER(previewMode, 300, 4);
MEMBER(monoScan, 312, 4);
MEMBER(gammaTableB, 316, 256);
MEMBER(gammaTableG, 572, 256);
MEMBER(gammaTableR, 828, 256);
MEMBER(colorMatrix, 1340, 9);
MEMBER(optionParam, 1404, 1);
MEMBER(mainStatusBit5, 1434, 1);
MEMBER(mainStatusBit4, 1435, 1);
MEMBER(rangeEnabled, 1568, 2);
MEMBER(rangeMin, 1570, 2);
MEMBER(rangeMax, 1572, 2);
MEMBER(areaWidthPx, 1576, 4);
MEMBER(areaHeightPx, 1580, 4);
MEMBER(areaLeftPx, 1584, 4);
MEMBER(areaTopPx, 1588, 4);
MEMBER(thresholdT, 1600, 2);
MEMBER(customGammaCode, 1602, 1);
MEMBER(progressWindow, 1784, 8);
MEMBER(productNameReply, 1792, 17);
MEMBER(modelId, 1816, 8);
MEMBER(deviceInterface, 1840, 8);
MEMBER(useDeviceInterface, 1852, 4);
MEMBER(maxResolutionCopy, 1860, 2);
MEMBER(minResolutionCopy, 1862, 2);
MEMBER(baseResolutionCopy, 1864, 2);
MEMBER(feederStatusExtra, 1868, 4);

static_assert(offsetof(PMAcquisitionSetup, status) == 0, "status");
static_assert(offsetof(PMAcquisitionSetup, lineBytes) == 8, "lineBytes");
static_assert(offsetof(PMAcquisitionSetup, widthPixels) == 16, "widthPixels");
static_assert(offsetof(PMAcquisitionSetup, heightLines) == 20, "heightLines");
static_assert(offsetof(PMAcquisitionBand, status) == 0, "status");
static_assert(offsetof(PMAcquisitionBand, done) == 8, "done");
static_assert(offsetof(PMAcquisitionBand, lines) == 12, "lines");
static_assert(offsetof(PMAcquisitionBand, bytes) == 16, "bytes");
static_assert(PMAcquisitionGoOn == 1, "go on");
static_assert(PMAcquisitionFailed == 2, "failed");
static_assert(PMAcquisitionFreshBuffer == 3, "fresh buffer");

// Every function that the header declares can be linked.
const void* const exportsOfTheModule[] = {
    (const void*)PMAbortScan,        (const void*)PMAcquireImage,
    (const void*)PMCloseScanner,     (const void*)PMEject,
    (const void*)PMEnableOption,     (const void*)PMFeed,
    (const void*)PMGetOptionStatus,  (const void*)PMGetScanError,
    (const void*)PMGetScanPaperSize, (const void*)PMInitAcquire,
    (const void*)PMOpenScanner,      (const void*)PMReset,
    (const void*)PMSetFocus,         (const void*)PMSetScannerHardware,
};

int main(void) {
  // Nothing is open.
  return (int)PMGetOptionStatus(2) + (int)PMReset();
}
