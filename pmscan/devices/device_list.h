#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "pmscan/devices/still_image_device_names.h"
#include "pmscan/report/json_report.h"

namespace pmscan {

struct SimulatedEntry {
  std::string device;                   // as --device names it: "sim:extended:QM2700"
  std::string product;                  // product name, empty for a family's plain scanner
  std::string unit{};                   // "feeder" or "film unit"; empty without one
  unsigned deepBits = 0;                // of a sample in the deep modes
  std::uint32_t highestResolution = 0;  // dots per inch; as pmscan info has it
};

struct ScannerFileEntry {
  std::string device;       // as --device names it: "sim:office_feeder.json"
  std::string description;  // its own, or what is wrong with it
};

// What --device can name.
struct DeviceList {
  std::vector<SimulatedEntry> simulated;
  std::vector<StillImageEntry> stillImage;
  std::string whyNoService;  // why the still-image service did not answer; empty when it did
  std::vector<ScannerFileEntry> scannerFiles{};
};

std::string DeviceListText(const DeviceList& list);
Json DeviceListJson(const DeviceList& list);

}  // namespace pmscan
