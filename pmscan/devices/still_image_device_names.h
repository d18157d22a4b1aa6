#pragma once

#include <string>
#include <vector>

namespace pmscan {

// A device that the still-image service knows; texts in UTF-8.
struct StillImageEntry {
  std::string internalName;  // "{6BDD1FC6-810F-11D0-BEC7-08002BE2092F}\0001", unique
  std::string localName;     // as the system shows it; not always unique
  std::string vendor;
  std::string port;
};

// Whether --device names a still-image device: "sti:NAME".
bool IsStillImageName(const std::string& device);

// The entry that "sti:NAME" means: NAME is an internal name, or a local name that only one device
// has. Throws Failure(kUsage) that lists what there is.
const StillImageEntry& FindStillImageEntry(const std::vector<StillImageEntry>& entries,
                                           const std::string& device);

// What --device has to be for the entry: its local name where that is enough.
std::string DeviceNameOf(const std::vector<StillImageEntry>& entries, const StillImageEntry& entry);

}  // namespace pmscan
