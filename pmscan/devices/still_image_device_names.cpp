#include "pmscan/devices/still_image_device_names.h"

#include <algorithm>
#include <string_view>

#include "pmscan/command_line/failure.h"
#include "pmscan/report/error_codes.h"
#include "simulator/catalog/nearest_name.h"

namespace pmscan {
namespace {

constexpr std::string_view kPrefix = "sti:";

bool IsAlone(const std::vector<StillImageEntry>& entries, const std::string& localName) {
  return std::count_if(entries.begin(), entries.end(), [&](const StillImageEntry& entry) {
           return entry.localName == localName;
         }) == 1;
}

[[noreturn]] void RefuseUnknown(const std::vector<StillImageEntry>& entries,
                                const std::string& device) {
  std::string names;
  for (const StillImageEntry& entry : entries) {
    names += (names.empty() ? "" : ", ") + DeviceNameOf(entries, entry);
  }
  throw Failure(kUsage, "There is no one device \"" + device +
                            "\"; the still-image service knows " +
                            (names.empty() ? "none." : "these: " + names + "."));
}

}  // namespace

bool IsStillImageName(const std::string& device) {
  return simulator::BeginsWithName(device, kPrefix);
}

const StillImageEntry& FindStillImageEntry(const std::vector<StillImageEntry>& entries,
                                           const std::string& device) {
  const std::string name = device.substr(kPrefix.size());
  for (const StillImageEntry& entry : entries) {
    const bool isIt =
        entry.internalName == name || (entry.localName == name && IsAlone(entries, name));
    if (isIt) return entry;
  }
  RefuseUnknown(entries, device);
}

std::string DeviceNameOf(const std::vector<StillImageEntry>& entries,
                         const StillImageEntry& entry) {
  const bool isEnough = !entry.localName.empty() && IsAlone(entries, entry.localName);
  return std::string(kPrefix) + (isEnough ? entry.localName : entry.internalName);
}

}  // namespace pmscan
