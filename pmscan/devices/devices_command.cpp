#include "pmscan/devices/devices_command.h"

#include <string>

#include "pmscan/command_line/command_line.h"
#include "pmscan/command_line/failure.h"
#include "pmscan/devices/simulator_profiles.h"
#include "pmscan/devices/still_image_service.h"
#include "simulator/catalog/catalog.h"
#include "simulator/catalog/models.h"
#include "simulator/catalog/profile.h"
#include "simulator/catalog/profile_error.h"

namespace pmscan {
namespace {

std::string ProductOf(const std::string& modelId) {
  for (const simulator::Model& model : simulator::ModelTable()) {
    if (model.id != modelId) continue;
    const std::string product(model.productName);
    return product.substr(0, product.find_last_not_of(' ') + 1);
  }
  return {};
}

std::string DescriptionOf(const std::string& profile) {
  try {
    return simulator::ReadProfile(ProfileFile(profile)).description;
  } catch (const simulator::ProfileError& error) {
    return error.what();
  }
}

}  // namespace

DeviceList FindDevices() {
  DeviceList list;
  for (const std::string& name : simulator::ScannerNames()) {
    list.simulated.push_back({"sim:" + name, ProductOf(simulator::ModelIdOf(name))});
  }
  for (const std::string& name : ProfileNames()) {
    list.profiles.push_back({"sim:" + name, DescriptionOf(name)});
  }
  try {
    list.stillImage = StillImageService().Devices();
  } catch (const Failure& failure) {
    list.whyNoService = failure.what();
  }
  return list;
}

}  // namespace pmscan
