#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string_view>

namespace pmddb832 {

class StillImageDevice;

// The record through which host and module share all they know of the scanner and of the scan.
// The host owns it and keeps it alive while the module is loaded. Integers are little-endian;
// the number behind each member is its byte offset, which is fixed. Members marked "written at
// identification" are filled by the module when the scanner is opened; the others belong to the
// host. Bytes in the reserved members are never touched.
struct ScannerSettings {
  // Command-level code, 0 to 8; 0 means not supported. Written at identification.
  std::uint32_t commandLevel;  // 0
  // Level letter ("A" or "B"), level digit, terminating zero. Written at identification.
  char commandLevelText[3];   // 4
  std::uint8_t reserved7[1];  // 7
  // Model id, zero-terminated; "ORVAN  " when the product query fails. Written at identification.
  char modelName[8];  // 8
  // Document source fitted: 0 document feeder, 1 transparency unit, 2 flatbed only. Written at
  // identification.
  std::uint32_t docFeedOption;  // 16
  std::uint8_t reserved20[4];   // 20
  // 1, or 2 when an option area exists. Written at identification.
  std::uint16_t areaCount;     // 24
  std::uint8_t reserved26[2];  // 26
  // Flatbed maximum width, 1/100 inch. Written at identification.
  std::uint32_t bedWidth;  // 28
  // Flatbed maximum height, 1/100 inch. Written at identification.
  std::uint32_t bedHeight;  // 32
  // Option area maximum width, 1/100 inch, when docFeedOption is not 2. Written at identification.
  std::uint32_t optionWidth;  // 36
  // Option area maximum height, 1/100 inch, when docFeedOption is not 2. Written at identification.
  std::uint32_t optionHeight;   // 40
  std::uint8_t reserved44[36];  // 44
  // 4 for command level 1, 5 for levels 2 to 4, else 6. Written at identification.
  std::uint16_t levelGroup;  // 80
  // Leading entries of the halftone table that the scanner supports. Written at identification.
  std::uint16_t halftoneInfo;  // 82
  // Minimum resolution, dots per inch. Written at identification.
  std::uint16_t minResolution;  // 84
  // Extended set: basic resolution; standard set: last listed one; dots per inch. Written at
  // identification.
  std::uint16_t baseResolution;  // 86
  // Extended set only: half the identity's maximum, dots per inch. Written at identification.
  std::uint16_t maxResolution;  // 88
  std::uint8_t reserved90[74];  // 90
  // Command set that identified the scanner: 2 standard, 3 extended. Written at identification.
  std::uint16_t scanInfoVariant;  // 164
  std::uint8_t reserved166[6];    // 166
  // Channel of a single-channel scan: 1, 2 or 3.
  std::uint16_t dropoutChannel;  // 172
  std::uint8_t reserved174[2];   // 174
  // Pixel type of the scan, 0 to 8.
  std::uint32_t pixelType;      // 176
  std::uint8_t reserved180[4];  // 180
  // Zoom in percent.
  std::uint16_t zoom;  // 184
  // Scan resolution, dots per inch.
  std::uint16_t resolution;      // 186
  std::uint8_t reserved188[20];  // 188
  // Left edge of the scan area, taken as 1/100 inch. Extended set only.
  double originX;  // 208
  // Top edge of the scan area, taken as 1/100 inch. Extended set only.
  double originY;               // 216
  std::uint8_t reserved224[2];  // 224
  // Nonzero: line art is delivered inverted.
  std::uint8_t invertMono;      // 226
  std::uint8_t reserved227[1];  // 227
  // Sent divided by 333.
  std::int32_t brightness;      // 228
  std::uint8_t reserved232[8];  // 232
  // Row of the halftone table, 0 to 9.
  std::int32_t halftoneIndex;  // 240
  // Sent divided by 500.
  std::int32_t sharpness;       // 244
  std::uint8_t reserved248[2];  // 248
  // Gamma times 100.
  std::uint16_t gamma;  // 250
  // Value of ESC "g" and of byte 27 of the extended parameter block.
  std::uint8_t paramG;          // 252
  std::uint8_t reserved253[3];  // 253
  // 1: colour mode 2 is sent as 1. Standard set only.
  std::uint32_t altColorMode;  // 256
  // Nonzero, on a feeder with mainStatusBit5: trailing pad pixels are white.
  std::uint16_t whitePadding;   // 260
  std::uint8_t reserved262[2];  // 262
  // Selected area: 0 flatbed, 1 option area. Set to 0 at identification.
  std::uint8_t scanSource;      // 264
  std::uint8_t reserved265[3];  // 265
  // Nonzero: the gamma tables are downloaded.
  std::uint32_t customGamma;    // 268
  std::uint8_t reserved272[4];  // 272
  // Nonzero: the colour matrix is downloaded.
  std::uint32_t colorCorrection;  // 276
  // Nonzero: halftone code 3 is sent.
  std::uint32_t halftoneOverride;  // 280
  // Source of the ESC "s" value and of the extended enhancement byte.
  std::uint32_t optionS;  // 284
  // Nonzero: the image is mirrored and the area anchored at the right.
  std::uint32_t mirrorImage;    // 288
  std::uint8_t reserved292[4];  // 292
  // Nonzero: no eject at the end of a feeder page.
  std::uint32_t keepPaper;  // 296
  // Nonzero: 8-bit samples for pixel types 7 and 8, and the preview grey map.
  std::uint32_t previewMode;    // 300
  std::uint8_t reserved304[8];  // 304
  // Nonzero: single-channel scan.
  std::uint32_t monoScan;  // 312
  // Gamma table sent with prefix "B".
  std::uint8_t gammaTableB[256];  // 316
  // Gamma table sent with prefix "G".
  std::uint8_t gammaTableG[256];  // 572
  // Gamma table sent with prefix "R" or "M".
  std::uint8_t gammaTableR[256];   // 828
  std::uint8_t reserved1084[256];  // 1084
  // The nine bytes of ESC "m".
  std::uint8_t colorMatrix[9];    // 1340
  std::uint8_t reserved1349[55];  // 1349
  // Byte 37 of the extended parameter block when the option unit is on.
  std::uint8_t optionParam;       // 1404
  std::uint8_t reserved1405[29];  // 1405
  // Feeder capability flag: bit 0x20 of the feeder status byte. Written at identification.
  std::uint8_t mainStatusBit5;  // 1434
  // 1 when that byte has both 0x20 and 0x10. Written at identification.
  std::uint8_t mainStatusBit4;     // 1435
  std::uint8_t reserved1436[132];  // 1436
  // 1. Written at identification.
  std::uint16_t rangeEnabled;  // 1568
  // 50. Written at identification.
  std::uint16_t rangeMin;  // 1570
  // 200. Written at identification.
  std::uint16_t rangeMax;        // 1572
  std::uint8_t reserved1574[2];  // 1574
  // Scan width in pixels at the scan resolution.
  std::uint32_t areaWidthPx;  // 1576
  // Scan height in lines at the scan resolution.
  std::uint32_t areaHeightPx;  // 1580
  // Left edge in pixels at the scan resolution; the extended set computes it from originX.
  std::uint32_t areaLeftPx;  // 1584
  // Top edge in lines at the scan resolution; the extended set computes it from originY.
  std::uint32_t areaTopPx;       // 1588
  std::uint8_t reserved1592[8];  // 1592
  // 0xFFFF means unset; else its low byte is sent.
  std::uint16_t thresholdT;  // 1600
  // Gamma code sent after a table download.
  std::uint8_t customGammaCode;    // 1602
  std::uint8_t reserved1603[181];  // 1603
  // Window handle repainted when a scan starts; may be null.
  void* progressWindow;  // 1784
  // Product name of the scanner, blank padded to 16 characters, terminating zero. Written at
  // identification.
  char productNameReply[17];     // 1792
  std::uint8_t reserved1809[7];  // 1809
  // Model id that the host expects; may be empty.
  char modelId[8];                // 1816
  std::uint8_t reserved1824[16];  // 1824
  // The host's still-image device; may be null. Not owned.
  StillImageDevice* deviceInterface;  // 1840
  std::uint8_t reserved1848[4];       // 1848
  // Nonzero: transfers go through deviceInterface; zero: through direct entry points.
  std::uint32_t useDeviceInterface;  // 1852
  std::uint8_t reserved1856[4];      // 1856
  // Extended set: copy of maxResolution; standard set: last listed resolution. Written at
  // identification.
  std::uint16_t maxResolutionCopy;  // 1860
  // Copy of minResolution. Written at identification.
  std::uint16_t minResolutionCopy;  // 1862
  // Extended set: copy of baseResolution; standard set: maxResolutionCopy / 4. Written at
  // identification.
  std::uint16_t baseResolutionCopy;  // 1864
  std::uint8_t reserved1866[2];      // 1866
  // Third feeder capability flag, 0 or 1. Written at identification.
  std::uint32_t feederStatusExtra;  // 1868
};

struct SettingsField {
  std::string_view name;
  std::size_t offset;
  std::size_t width;
  bool matchesRecord;  // the declared member lies at this offset with this width
};

#define PMDDB832_ROW(member, offset, width)              \
  SettingsField {                                        \
#member, offset, width,                              \
        offsetof(ScannerSettings, member) == (offset) && \
            sizeof(ScannerSettings::member) == (width)   \
  }

// Every byte of the record, in order: what a dump, a comparison or a fuzzer walks over.
// clang-format off
inline constexpr std::array kScannerSettingsFields{
    PMDDB832_ROW(commandLevel, 0, 4),
    PMDDB832_ROW(commandLevelText, 4, 3),
    PMDDB832_ROW(reserved7, 7, 1),
    PMDDB832_ROW(modelName, 8, 8),
    PMDDB832_ROW(docFeedOption, 16, 4),
    PMDDB832_ROW(reserved20, 20, 4),
    PMDDB832_ROW(areaCount, 24, 2),
    PMDDB832_ROW(reserved26, 26, 2),
    PMDDB832_ROW(bedWidth, 28, 4),
    PMDDB832_ROW(bedHeight, 32, 4),
    PMDDB832_ROW(optionWidth, 36, 4),
    PMDDB832_ROW(optionHeight, 40, 4),
    PMDDB832_ROW(reserved44, 44, 36),
    PMDDB832_ROW(levelGroup, 80, 2),
    PMDDB832_ROW(halftoneInfo, 82, 2),
    PMDDB832_ROW(minResolution, 84, 2),
    PMDDB832_ROW(baseResolution, 86, 2),
    PMDDB832_ROW(maxResolution, 88, 2),
    PMDDB832_ROW(reserved90, 90, 74),
    PMDDB832_ROW(scanInfoVariant, 164, 2),
    PMDDB832_ROW(reserved166, 166, 6),
    PMDDB832_ROW(dropoutChannel, 172, 2),
    PMDDB832_ROW(reserved174, 174, 2),
    PMDDB832_ROW(pixelType, 176, 4),
    PMDDB832_ROW(reserved180, 180, 4),
    PMDDB832_ROW(zoom, 184, 2),
    PMDDB832_ROW(resolution, 186, 2),
    PMDDB832_ROW(reserved188, 188, 20),
    PMDDB832_ROW(originX, 208, 8),
    PMDDB832_ROW(originY, 216, 8),
    PMDDB832_ROW(reserved224, 224, 2),
    PMDDB832_ROW(invertMono, 226, 1),
    PMDDB832_ROW(reserved227, 227, 1),
    PMDDB832_ROW(brightness, 228, 4),
    PMDDB832_ROW(reserved232, 232, 8),
    PMDDB832_ROW(halftoneIndex, 240, 4),
    PMDDB832_ROW(sharpness, 244, 4),
    PMDDB832_ROW(reserved248, 248, 2),
    PMDDB832_ROW(gamma, 250, 2),
    PMDDB832_ROW(paramG, 252, 1),
    PMDDB832_ROW(reserved253, 253, 3),
    PMDDB832_ROW(altColorMode, 256, 4),
    PMDDB832_ROW(whitePadding, 260, 2),
    PMDDB832_ROW(reserved262, 262, 2),
    PMDDB832_ROW(scanSource, 264, 1),
    PMDDB832_ROW(reserved265, 265, 3),
    PMDDB832_ROW(customGamma, 268, 4),
    PMDDB832_ROW(reserved272, 272, 4),
    PMDDB832_ROW(colorCorrection, 276, 4),
    PMDDB832_ROW(halftoneOverride, 280, 4),
    PMDDB832_ROW(optionS, 284, 4),
    PMDDB832_ROW(mirrorImage, 288, 4),
    PMDDB832_ROW(reserved292, 292, 4),
    PMDDB832_ROW(keepPaper, 296, 4),
    PMDDB832_ROW(previewMode, 300, 4),
    PMDDB832_ROW(reserved304, 304, 8),
    PMDDB832_ROW(monoScan, 312, 4),
    PMDDB832_ROW(gammaTableB, 316, 256),
    PMDDB832_ROW(gammaTableG, 572, 256),
    PMDDB832_ROW(gammaTableR, 828, 256),
    PMDDB832_ROW(reserved1084, 1084, 256),
    PMDDB832_ROW(colorMatrix, 1340, 9),
    PMDDB832_ROW(reserved1349, 1349, 55),
    PMDDB832_ROW(optionParam, 1404, 1),
    PMDDB832_ROW(reserved1405, 1405, 29),
    PMDDB832_ROW(mainStatusBit5, 1434, 1),
    PMDDB832_ROW(mainStatusBit4, 1435, 1),
    PMDDB832_ROW(reserved1436, 1436, 132),
    PMDDB832_ROW(rangeEnabled, 1568, 2),
    PMDDB832_ROW(rangeMin, 1570, 2),
    PMDDB832_ROW(rangeMax, 1572, 2),
    PMDDB832_ROW(reserved1574, 1574, 2),
    PMDDB832_ROW(areaWidthPx, 1576, 4),
    PMDDB832_ROW(areaHeightPx, 1580, 4),
    PMDDB832_ROW(areaLeftPx, 1584, 4),
    PMDDB832_ROW(areaTopPx, 1588, 4),
    PMDDB832_ROW(reserved1592, 1592, 8),
    PMDDB832_ROW(thresholdT, 1600, 2),
    PMDDB832_ROW(customGammaCode, 1602, 1),
    PMDDB832_ROW(reserved1603, 1603, 181),
    PMDDB832_ROW(progressWindow, 1784, 8),
    PMDDB832_ROW(productNameReply, 1792, 17),
    PMDDB832_ROW(reserved1809, 1809, 7),
    PMDDB832_ROW(modelId, 1816, 8),
    PMDDB832_ROW(reserved1824, 1824, 16),
    PMDDB832_ROW(deviceInterface, 1840, 8),
    PMDDB832_ROW(reserved1848, 1848, 4),
    PMDDB832_ROW(useDeviceInterface, 1852, 4),
    PMDDB832_ROW(reserved1856, 1856, 4),
    PMDDB832_ROW(maxResolutionCopy, 1860, 2),
    PMDDB832_ROW(minResolutionCopy, 1862, 2),
    PMDDB832_ROW(baseResolutionCopy, 1864, 2),
    PMDDB832_ROW(reserved1866, 1866, 2),
    PMDDB832_ROW(feederStatusExtra, 1868, 4),
};
// clang-format on

#undef PMDDB832_ROW

inline constexpr std::size_t kScannerSettingsSize = 1872;

constexpr bool FieldsTileTheRecord() {
  std::size_t next = 0;
  for (const SettingsField& field : kScannerSettingsFields) {
    if (!field.matchesRecord || field.offset != next) return false;
    next += field.width;
  }
  return next == kScannerSettingsSize;
}

static_assert(sizeof(ScannerSettings) == kScannerSettingsSize);
static_assert(FieldsTileTheRecord());

inline constexpr std::uint16_t kThresholdUnset = 0xFFFF;

}  // namespace pmddb832
