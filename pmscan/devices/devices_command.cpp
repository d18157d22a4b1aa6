#include "pmscan/devices/devices_command.h"

#include <string>
#include <variant>

#include "pmscan/command_line/command_line.h"
#include "pmscan/command_line/failure.h"
#include "pmscan/devices/simulated_connection.h"
#include "pmscan/devices/still_image_devices.h"
#include "simulator/catalog/catalog.h"
#include "simulator/catalog/profile.h"
#include "simulator/catalog/profile_error.h"
#include "simulator/catalog/scanner_files.h"
#include "wire/deep_samples.h"

namespace pmscan {
namespace {

// The highest that the module makes of the identity, and takes.
std::uint32_t HighestResolution(const simulator::ExtendedIdentity& identity) {
  return identity.maxResolution / 2;
}

std::uint32_t HighestResolution(const simulator::StandardIdentity& identity) {
  return identity.resolutions.back();
}

// What a scanner of a model has; of a family's plain one its name alone.
SimulatedEntry EntryOf(const std::string& name) {
  SimulatedEntry entry{"sim:" + name, {}};
  if (simulator::ModelIdOf(name).empty()) return entry;
  simulator::ScannerConfig config = simulator::ConfigOf(name);
  std::visit(
      [&](const auto& scanner) {
        const std::string& product = scanner.identity.productName;
        entry.product = product.substr(0, product.find_last_not_of(' ') + 1);
        entry.highestResolution = HighestResolution(scanner.identity);
      },
      config);
  // More come only with extended commands, and from no model that the module knows by its id.
  entry.deepBits = pmddb832::kUsualDeepBits;
  const simulator::OptionUnit unit = simulator::EquipmentOf(config).optionUnit;
  if (unit == simulator::OptionUnit::kFeeder) entry.unit = "feeder";
  if (unit == simulator::OptionUnit::kTransparencyUnit) entry.unit = "film unit";
  return entry;
}

std::string DescriptionOf(const std::string& file) {
  try {
    return simulator::ReadProfile(simulator::FindScannerFile(file, ScannerFileFolder()))
        .description;
  } catch (const simulator::ProfileError& error) {
    return error.what();
  }
}

}  // namespace

DeviceList FindDevices() {
  DeviceList list;
  for (const std::string& name : simulator::ScannerNames()) {
    list.simulated.push_back(EntryOf(name));
  }
  for (const std::string& name : simulator::ScannerFileNames(ScannerFileFolder())) {
    list.scannerFiles.push_back({"sim:" + name, DescriptionOf(name)});
  }
  try {
    list.stillImage = StillImageDevices();
  } catch (const Failure& failure) {
    list.whyNoService = failure.what();
  }
  return list;
}

}  // namespace pmscan
