#include "pmscan/devices/device_list.h"

#include <algorithm>
#include <nlohmann/json.hpp>

namespace pmscan {
namespace {

constexpr std::size_t kColumn = 26;
constexpr std::size_t kProfileColumn = 30;

std::string Row(std::string name, const std::string& description, std::size_t column = kColumn) {
  if (description.empty()) return "  " + name + "\n";
  name.resize(std::max(column, name.size() + 2), ' ');
  return "  " + name + description + "\n";
}

std::string Description(const StillImageEntry& entry) {
  std::string text = entry.vendor;
  if (!entry.port.empty()) text += (text.empty() ? "at " : ", at ") + entry.port;
  return text;
}

std::string ProfilesText(const DeviceList& list) {
  if (list.profiles.empty()) return {};
  std::string text = "\nSimulated scanners by profile\n";
  for (const ProfileEntry& entry : list.profiles) {
    text += Row(entry.device, entry.description, kProfileColumn);
  }
  return text;
}

std::string StillImageText(const DeviceList& list) {
  if (!list.whyNoService.empty()) return "  none: " + list.whyNoService + "\n";
  if (list.stillImage.empty()) return "  none: the system knows no such device\n";
  std::string text;
  for (const StillImageEntry& entry : list.stillImage) {
    text += Row(DeviceNameOf(list.stillImage, entry), Description(entry));
  }
  return text;
}

}  // namespace

std::string DeviceListText(const DeviceList& list) {
  std::string text = "Simulated scanners\n";
  for (const SimulatedEntry& entry : list.simulated) text += Row(entry.device, entry.product);
  return text + ProfilesText(list) + "\nStill-image devices of this system\n" +
         StillImageText(list);
}

Json DeviceListJson(const DeviceList& list) {
  Json json{
      {"simulated", Json::array()}, {"profiles", Json::array()}, {"stillImage", Json::array()}};
  for (const SimulatedEntry& entry : list.simulated) {
    json["simulated"].push_back({{"device", entry.device}, {"product", entry.product}});
  }
  for (const ProfileEntry& entry : list.profiles) {
    json["profiles"].push_back({{"device", entry.device}, {"description", entry.description}});
  }
  for (const StillImageEntry& entry : list.stillImage) {
    json["stillImage"].push_back({{"device", DeviceNameOf(list.stillImage, entry)},
                                  {"name", entry.localName},
                                  {"internalName", entry.internalName},
                                  {"vendor", entry.vendor},
                                  {"port", entry.port}});
  }
  json["whyNoService"] = list.whyNoService;
  return json;
}

}  // namespace pmscan
