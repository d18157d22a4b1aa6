#pragma once

#include <cstdint>

#include "interface/scanner_settings.h"
#include "transport/acquisition_records.h"

// The functions that the module exports. The host calls them one at a time, from any one thread.
// Before the first PMOpenScanner they do nothing and return 0, except PMGetScanError.

extern "C" {

// Initialises the module for the scanner that `settings` describes, identifies the scanner and
// fills the identification members of the record. The host keeps the record alive until the module
// is unloaded or PMSetScannerHardware names another. Returns 1 when the scanner is open, else 0:
// PMGetScanError tells why.
std::uint32_t PMOpenScanner(pmddb832::ScannerSettings* settings);

// Makes `settings` the record that every later call reads and writes.
void PMSetScannerHardware(pmddb832::ScannerSettings* settings);

// Prepares a scan of the area, resolution and pixel type in the settings. `outputFormat` is the
// host's pixel type for the delivered image; `progress` may be null. The outcome is in `setup`.
void PMInitAcquire(std::uint32_t outputFormat, pmddb832::ProgressCallback progress,
                   pmddb832::AcquisitionSetup* setup);

// Delivers as many whole lines as `buffer` holds; the first call of a scan starts the scanner.
// Call it until `band->done` is 1 or `band->status` is kAcquisitionFailed.
void PMAcquireImage(std::uint8_t* buffer, std::uint32_t bufferBytes,
                    pmddb832::AcquisitionBand* band);

// Cancels the scan under way.
void PMAbortScan();

// Ends the connection; PMOpenScanner opens it again.
void PMCloseScanner();

// Status of an option: 0 document feeder, 1 transparency unit, 2 flatbed. Returns 0 ready, 7 status
// unreadable, 13 to 15 condition of the option, 22 scanner error, 31 not ready.
std::uint32_t PMGetOptionStatus(std::uint32_t option);

// Eject or feed a page on the document feeder, where the state of the page allows it. The argument
// is ignored.
void PMEject(void* ignored);
void PMFeed(void* ignored);

// Returns 1 when the scanner acknowledged the reset, else 0.
std::uint32_t PMReset();

// Focus of scanners of command level 8; on others `position` comes back unchanged. Mode 0 sets
// `position`, any other mode focuses automatically, which takes 20 seconds. Returns the position,
// or 156 when the scanner did not report one.
std::uint8_t PMSetFocus(std::uint32_t mode, std::uint8_t position);

// Switches the option unit off (0) or on. Returns 1 when the scanner acknowledged, else 0.
std::uint32_t PMEnableOption(std::uint32_t value);

// Maximum area of an option in pixels. Returns 0, or 7 when the scanner did not tell.
std::uint32_t PMGetScanPaperSize(std::uint32_t option, std::uint32_t* widthPixels,
                                 std::uint32_t* heightPixels);

// Code of the last failure, 0 when there was none (docs/error-codes.md).
std::uint32_t PMGetScanError();

// Entry point of the library: `reason` 1 on process attach, 0 on process detach.
std::int32_t DllMain(void* instance, std::uint32_t reason, void* reserved);

}  // extern "C"
