#pragma once

#include <cstdint>

#include "interface/scanner_settings.h"
#include "transport/device_driver.h"
#include "transport/general_cmd.h"

namespace pmddb832 {

// Handle under which the library was loaded; handed to the host's log.
inline void* moduleInstance = nullptr;

// The record of the scanner that is current; null until the host has given one. Not owned.
inline ScannerSettings* currentSettings = nullptr;

// The module's one channel; null while there is none. Owned.
inline DeviceDriver* currentChannel = nullptr;

// The command set that every call of the host goes to; null while there is none. Owned: destroyed
// by PMExit, but not by a further PMInit, which only replaces it.
inline GeneralCmd* currentCommandSet = nullptr;

// What the last successful probe told: 1 when the scanner answers the extended commands, and its
// level characters with a terminating zero, which are kept for diagnostics.
inline std::uint32_t extendedSupport = 0;
inline char commandLevelString[3] = {};

// What the channel can carry: kExtendedSetSupported and other bits.
inline std::uint32_t serverSupport = 0;

// The class of the command set, the current one and the next: ExtScanCmd when the scanner answers
// the extended commands and the channel can carry them, else StdScanCmd.
bool UsesExtendedSet();

// Result of the last probe; PMGetScanError reports it once while there is no command set.
inline std::uint32_t initialisationError = 0;

// Creates the log, the device channel and, after the probe, the command set that the scanner of the
// record needs. With `createOnly` it stops behind the channel. `probeOption` is kept by the objects
// it creates. Returns the channel, or null when the module cannot be used.
DeviceDriver* PMInit(ScannerSettings& settings, std::uint8_t probeOption, std::uint32_t createOnly);

// Closes and destroys the command set and destroys the channel. The log stays.
void PMExit();

// Probes the scanner. Returns 0, also when the scanner does not answer: what an earlier probe
// learned stays then; or kNoTransport when the probe could not be made.
std::uint32_t ExtCommandSupport(Call& call, std::uint8_t option);

}  // namespace pmddb832
