#include "pmscan/devices/devices_command.h"

#include <string>

#include "pmscan/command_line/command_line.h"
#include "pmscan/command_line/failure.h"
#include "pmscan/devices/simulated_connection.h"
#include "pmscan/devices/still_image_devices.h"
#include "simulator/catalog/catalog.h"
#include "simulator/catalog/models.h"
#include "simulator/catalog/profile.h"
#include "simulator/catalog/profile_error.h"
#include "simulator/catalog/scanner_files.h"
#include "wire/deep_samples.h"

namespace pmscan {
namespace {

// What the model has; of a family without a model its name alone.
SimulatedEntry EntryOf(const std::string& name) {
  SimulatedEntry entry{"sim:" + name, {}};
  const std::string modelId = simulator::ModelIdOf(name);
  for (const simulator::Model& model : simulator::ModelTable()) {
    if (model.id != modelId) continue;
    const std::string product(model.productName);
    entry.product = product.substr(0, product.find_last_not_of(' ') + 1);
    // More come only with extended commands, and from no model that the module knows by its id.
    entry.deepBits = pmddb832::kUsualDeepBits;
    entry.highestResolution = model.maxResolution;
    if (model.optionUnit == simulator::OptionUnit::kFeeder) entry.unit = "feeder";
    if (model.optionUnit == simulator::OptionUnit::kTransparencyUnit) entry.unit = "film unit";
  }
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
