#include "pmscan/devices/device_list.h"

#include <algorithm>
#include <nlohmann/json.hpp>

namespace pmscan {
namespace {

constexpr std::size_t kColumn = 26;
constexpr std::size_t kProductColumn = 18;
constexpr std::size_t kFileColumn = 30;

std::string Row(std::string name, const std::string& description, std::size_t column = kColumn) {
  if (description.empty()) return "  " + name + "\n";
  name.resize(std::max(column, name.size() + 2), ' ');
  return "  " + name + description + "\n";
}

// "SCANNER QM-2700   2400 dpi, 12 bits, feeder"; nothing that is not known.
std::string FeaturesOf(const SimulatedEntry& entry) {
  if (entry.highestResolution == 0) return entry.product;
  std::string text = entry.product;
  text.resize(std::max(kProductColumn, text.size() + 2), ' ');
  text +=
      std::to_string(entry.highestResolution) + " dpi, " + std::to_string(entry.deepBits) + " bits";
  return entry.unit.empty() ? text : text + ", " + entry.unit;
}

std::string Description(const StillImageEntry& entry) {
  std::string text = entry.vendor;
  if (!entry.port.empty()) text += (text.empty() ? "at " : ", at ") + entry.port;
  return text;
}

std::string ScannerFilesText(const DeviceList& list) {
  if (list.scannerFiles.empty()) return {};
  std::string text = "\nSimulated scanners by file\n";
  for (const ScannerFileEntry& entry : list.scannerFiles) {
    text += Row(entry.device, entry.description, kFileColumn);
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
  for (const SimulatedEntry& entry : list.simulated) text += Row(entry.device, FeaturesOf(entry));
  return text + ScannerFilesText(list) + "\nStill-image devices of this system\n" +
         StillImageText(list);
}

Json DeviceListJson(const DeviceList& list) {
  Json json{
      {"simulated", Json::array()}, {"scannerFiles", Json::array()}, {"stillImage", Json::array()}};
  for (const SimulatedEntry& entry : list.simulated) {
    json["simulated"].push_back({{"device", entry.device},
                                 {"product", entry.product},
                                 {"unit", entry.unit},
                                 {"deepBits", entry.deepBits},
                                 {"highestResolution", entry.highestResolution}});
  }
  for (const ScannerFileEntry& entry : list.scannerFiles) {
    json["scannerFiles"].push_back({{"device", entry.device}, {"description", entry.description}});
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
