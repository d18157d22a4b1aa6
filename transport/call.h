#pragma once

namespace pmddb832 {

class DeviceDriver;
struct ScannerSettings;

// What one call of the host works with. The export takes it once and hands it down, so that a call
// under way keeps its record whatever the host sets meanwhile. Only the channel can go: it is
// destroyed when the host opens a scanner again from within the call.
struct Call {
  ScannerSettings& settings;
  DeviceDriver* channel;  // null when there is none: every transfer fails
};

}  // namespace pmddb832
