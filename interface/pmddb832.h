// What Pmddb832.dll exports and shares with its host, for C and C++. x64 only, for the module's
// pointers are 64 bits wide. hosting.md shows a small host.

#ifndef PMDDB832_H
#define PMDDB832_H

#include <stdint.h>

#ifdef __cplusplus
extern "C" {
#endif

// Windows' still-image device (sti.h).
struct IStiDevice;

// The record through which host and module share all they know of the scanner and of the scan.
// The host owns it and keeps it alive while the module is loaded. Integers are little-endian;
// the number behind each member is its byte offset, which is fixed. Members marked "written at
// identification" are filled by the module when the scanner is opened; the others belong to the
// host. Bytes in the reserved members are never touched.
typedef struct PMScannerSettings {
  // Command-level code, 0 to 8; 0 means not supported. Written at identification.
  uint32_t commandLevel;  // 0
  // Level letter ("A" or "B"), level digit, terminating zero. Written at identification.
  char commandLevelText[3];  // 4
  uint8_t reserved7[1];      // 7
  // Model id, zero-terminated; "ORVAN  " when the product query fails. Written at identification.
  char modelName[8];  // 8
  // Document source fitted: 0 document feeder, 1 transparency unit, 2 flatbed only. Written at
  // identification.
  uint32_t docFeedOption;  // 16
  uint8_t reserved20[4];   // 20
  // 1, or 2 when an option area exists. Written at identification.
  uint16_t areaCount;     // 24
  uint8_t reserved26[2];  // 26
  // Flatbed maximum width, 1/100 inch. Written at identification.
  uint32_t bedWidth;  // 28
  // Flatbed maximum height, 1/100 inch. Written at identification.
  uint32_t bedHeight;  // 32
  // Option area maximum width, 1/100 inch, when docFeedOption is not 2. Written at identification.
  uint32_t optionWidth;  // 36
  // Option area maximum height, 1/100 inch, when docFeedOption is not 2. Written at identification.
  uint32_t optionHeight;   // 40
  uint8_t reserved44[36];  // 44
  // 4 for command level 1, 5 for levels 2 to 4, else 6. Written at identification.
  uint16_t levelGroup;  // 80
  // Leading entries of the halftone table that the scanner supports. Written at identification.
  uint16_t halftoneInfo;  // 82
  // Minimum resolution, dots per inch. Written at identification.
  uint16_t minResolution;  // 84
  // Extended set: basic resolution; standard set: last listed one; dots per inch. Written at
  // identification.
  uint16_t baseResolution;  // 86
  // Extended set only: half the identity's maximum, dots per inch. Written at identification.
  uint16_t maxResolution;  // 88
  uint8_t reserved90[74];  // 90
  // Command set that identified the scanner: 2 standard, 3 extended. Written at identification.
  uint16_t scanInfoVariant;  // 164
  uint8_t reserved166[6];    // 166
  // Channel of a single-channel scan: 1, 2 or 3.
  uint16_t dropoutChannel;  // 172
  uint8_t reserved174[2];   // 174
  // Pixel type of the scan, 0 to 8.
  uint32_t pixelType;      // 176
  uint8_t reserved180[4];  // 180
  // Zoom in percent.
  uint16_t zoom;  // 184
  // Scan resolution, dots per inch.
  uint16_t resolution;      // 186
  uint8_t reserved188[20];  // 188
  // Left edge of the scan area, taken as 1/100 inch. Extended set only.
  double originX;  // 208
  // Top edge of the scan area, taken as 1/100 inch. Extended set only.
  double originY;          // 216
  uint8_t reserved224[2];  // 224
  // Nonzero: line art is delivered inverted.
  uint8_t invertMono;      // 226
  uint8_t reserved227[1];  // 227
  // Sent divided by 333.
  int32_t brightness;      // 228
  uint8_t reserved232[8];  // 232
  // Row of the halftone table, 0 to 9.
  int32_t halftoneIndex;  // 240
  // Sent divided by 500.
  int32_t sharpness;       // 244
  uint8_t reserved248[2];  // 248
  // Gamma times 100.
  uint16_t gamma;  // 250
  // Value of ESC "g" and of byte 27 of the extended parameter block.
  uint8_t paramG;          // 252
  uint8_t reserved253[3];  // 253
  // 1: colour mode 2 is sent as 1. Standard set only.
  uint32_t altColorMode;  // 256
  // Nonzero, on a feeder with mainStatusBit5: trailing pad pixels are white.
  uint16_t whitePadding;   // 260
  uint8_t reserved262[2];  // 262
  // Selected area: 0 flatbed, 1 option area. Set to 0 at identification.
  uint8_t scanSource;      // 264
  uint8_t reserved265[3];  // 265
  // Nonzero: the gamma tables are downloaded.
  uint32_t customGamma;    // 268
  uint8_t reserved272[4];  // 272
  // Nonzero: the colour matrix is downloaded.
  uint32_t colorCorrection;  // 276
  // Nonzero: halftone code 3 is sent.
  uint32_t halftoneOverride;  // 280
  // Source of the ESC "s" value and of the extended enhancement byte.
  uint32_t optionS;  // 284
  // Nonzero: the image is mirrored and the area anchored at the right.
  uint32_t mirrorImage;    // 288
  uint8_t reserved292[4];  // 292
  // Nonzero: no eject at the end of a feeder page.
  uint32_t keepPaper;  // 296
  // Nonzero: 8-bit samples for pixel types 7 and 8, and the preview grey map.
  uint32_t previewMode;    // 300
  uint8_t reserved304[8];  // 304
  // Nonzero: single-channel scan.
  uint32_t monoScan;  // 312
  // Gamma table sent with prefix "B".
  uint8_t gammaTableB[256];  // 316
  // Gamma table sent with prefix "G".
  uint8_t gammaTableG[256];  // 572
  // Gamma table sent with prefix "R" or "M".
  uint8_t gammaTableR[256];   // 828
  uint8_t reserved1084[256];  // 1084
  // The nine bytes of ESC "m".
  uint8_t colorMatrix[9];    // 1340
  uint8_t reserved1349[55];  // 1349
  // Byte 37 of the extended parameter block when the option unit is on.
  uint8_t optionParam;       // 1404
  uint8_t reserved1405[29];  // 1405
  // Feeder capability flag: bit 0x20 of the feeder status byte. Written at identification.
  uint8_t mainStatusBit5;  // 1434
  // 1 when that byte has both 0x20 and 0x10. Written at identification.
  uint8_t mainStatusBit4;     // 1435
  uint8_t reserved1436[132];  // 1436
  // 1. Written at identification.
  uint16_t rangeEnabled;  // 1568
  // 50. Written at identification.
  uint16_t rangeMin;  // 1570
  // 200. Written at identification.
  uint16_t rangeMax;        // 1572
  uint8_t reserved1574[2];  // 1574
  // Scan width in pixels at the scan resolution.
  uint32_t areaWidthPx;  // 1576
  // Scan height in lines at the scan resolution.
  uint32_t areaHeightPx;  // 1580
  // Left edge in pixels at the scan resolution; the extended set computes it from originX.
  uint32_t areaLeftPx;  // 1584
  // Top edge in lines at the scan resolution; the extended set computes it from originY.
  uint32_t areaTopPx;       // 1588
  uint8_t reserved1592[8];  // 1592
  // 0xFFFF means unset; else its low byte is sent.
  uint16_t thresholdT;  // 1600
  // Gamma code sent after a table download.
  uint8_t customGammaCode;    // 1602
  uint8_t reserved1603[181];  // 1603
  // Window handle repainted when a scan starts; may be null.
  void* progressWindow;  // 1784
  // Product name of the scanner, blank padded to 16 characters, terminating zero. Written at
  // identification.
  char productNameReply[17];  // 1792
  uint8_t reserved1809[7];    // 1809
  // Model id that the host expects; may be empty.
  char modelId[8];           // 1816
  uint8_t reserved1824[16];  // 1824
  // The host's still-image device; may be null. Not owned.
  struct IStiDevice* deviceInterface;  // 1840
  uint8_t reserved1848[4];             // 1848
  // Nonzero: transfers go through deviceInterface; zero: through direct entry points.
  uint32_t useDeviceInterface;  // 1852
  uint8_t reserved1856[4];      // 1856
  // Extended set: copy of maxResolution; standard set: last listed resolution. Written at
  // identification.
  uint16_t maxResolutionCopy;  // 1860
  // Copy of minResolution. Written at identification.
  uint16_t minResolutionCopy;  // 1862
  // Extended set: copy of baseResolution; standard set: maxResolutionCopy / 4. Written at
  // identification.
  uint16_t baseResolutionCopy;  // 1864
  uint8_t reserved1866[2];      // 1866
  // Third feeder capability flag, 0 or 1. Written at identification.
  uint32_t feederStatusExtra;  // 1868
} PMScannerSettings;

// PMScannerSettings.thresholdT: the scanner's own threshold.
#define PM_THRESHOLD_UNSET 0xFFFF

// The host's records of an acquisition, little-endian, at the stated offsets. The host owns them;
// the module writes the named members only.

enum PMAcquisitionStatus {
  PMAcquisitionGoOn = 1,
  PMAcquisitionFailed = 2,       // PMGetScanError tells why
  PMAcquisitionFreshBuffer = 3,  // from the host, standard set: start with a new receive buffer
};

// Filled by PMInitAcquire.
typedef struct PMAcquisitionSetup {
  uint32_t status;       // 0: PMAcquisitionStatus
  uint32_t reserved4;    // 4
  uint32_t lineBytes;    // 8: bytes of one host line
  uint32_t reserved12;   // 12
  uint32_t widthPixels;  // 16
  uint32_t heightLines;  // 20
} PMAcquisitionSetup;

// Filled by PMAcquireImage.
typedef struct PMAcquisitionBand {
  uint32_t status;     // 0: PMAcquisitionStatus
  uint32_t reserved4;  // 4
  uint32_t done;       // 8: 1 when the last line of the image was delivered
  uint32_t lines;      // 12: lines of this band
  uint32_t bytes;      // 16: bytes of this band
} PMAcquisitionBand;

// The host's progress routine; takes a percentage. May be null.
typedef void (*PMProgressCallback)(uint32_t percent);

// The host calls the functions one at a time, from any one thread. Before the first
// PMOpenScanner they do nothing and return 0, except PMGetScanError.

// Initialises the module for the scanner that `settings` describes, identifies the scanner and
// fills the identification members of the record. The host keeps the record alive until the module
// is unloaded or PMSetScannerHardware names another. Returns 1 when the scanner is open, else 0:
// PMGetScanError tells why.
uint32_t PMOpenScanner(PMScannerSettings* settings);

// Makes `settings` the record that every later call reads and writes.
void PMSetScannerHardware(PMScannerSettings* settings);

// Prepares a scan of the area, resolution and pixel type in the settings. `outputFormat` is the
// host's pixel type for the delivered image; `progress` may be null. The outcome is in `setup`.
void PMInitAcquire(uint32_t outputFormat, PMProgressCallback progress, PMAcquisitionSetup* setup);

// Delivers as many whole lines as `buffer` holds; the first call of a scan starts the scanner.
// Call it until `band->done` is 1 or `band->status` is PMAcquisitionFailed.
void PMAcquireImage(uint8_t* buffer, uint32_t bufferBytes, PMAcquisitionBand* band);

// Cancels the scan under way.
void PMAbortScan(void);

// Ends the connection; PMOpenScanner opens it again.
void PMCloseScanner(void);

// Status of an option: 0 document feeder, 1 transparency unit, 2 flatbed. Returns 0 ready, 7 status
// unreadable, 13 to 15 condition of the option, 22 scanner error, 31 not ready.
uint32_t PMGetOptionStatus(uint32_t option);

// Eject or feed a page on the document feeder, where the state of the page allows it. The argument
// is ignored.
void PMEject(void* ignored);
void PMFeed(void* ignored);

// Returns 1 when the scanner acknowledged the reset, else 0.
uint32_t PMReset(void);

// Focus of scanners of command level 8; on others `position` comes back unchanged. Mode 0 sets
// `position`, any other mode focuses automatically, which takes 20 seconds. Returns the position,
// or 156 when the scanner did not report one.
uint8_t PMSetFocus(uint32_t mode, uint8_t position);

// Switches the option unit off (0) or on. Returns 1 when the scanner acknowledged, else 0.
uint32_t PMEnableOption(uint32_t value);

// Maximum area of an option in pixels. Returns 0, or 7 when the scanner did not tell.
uint32_t PMGetScanPaperSize(uint32_t option, uint32_t* widthPixels, uint32_t* heightPixels);

// Code of the last failure, 0 when there was none (docs/error-codes.md).
uint32_t PMGetScanError(void);

#ifdef __cplusplus
}
#endif

#endif
