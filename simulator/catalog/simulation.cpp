#include "simulator/catalog/simulation.h"

#include <iterator>
#include <utility>

#include "simulator/catalog/file_names.h"
#include "simulator/catalog/profile_error.h"
#include "simulator/catalog/scanner_files.h"

namespace simulator {
namespace {

Picture PictureOnBed(const SimulationRequest& request) {
  return request.original.empty() ? request.drawTestPage() : request.readPicture(request.original);
}

Simulation FromCatalog(const SimulationRequest& request) {
  return {ModelIdOf(request.name), MakeScanner(request.name, PictureOnBed(request)), {}};
}

std::string FileOf(const SimulationRequest& request) {
  std::string file = FindScannerFile(request.name, request.scannerFiles);
  std::error_code unreadable;
  if (std::filesystem::exists(PathOf(file), unreadable) || unreadable) return file;
  throw ProfileError(file, 0, "",
                     "there is no such file" + SuggestScannerFile(file, request.scannerFiles));
}

Simulation FromFile(const SimulationRequest& request) {
  Profile profile = ReadProfile(FileOf(request));
  if (!request.original.empty()) profile.originalFile.clear();
  const bool bringsOriginal = !profile.originalFile.empty();
  auto scanner =
      MakeScanner(profile, request.readPicture, bringsOriginal ? Picture{} : PictureOnBed(request));
  return {profile.modelId, std::move(scanner), std::move(profile.faults)};
}

}  // namespace

Simulation Simulate(const SimulationRequest& request) {
  Simulation simulation =
      IsScannerFileName(request.name) ? FromFile(request) : FromCatalog(request);
  if (request.faultScript.empty()) return simulation;
  std::vector<Fault> faults = ReadFaultScript(request.faultScript);
  std::move(faults.begin(), faults.end(), std::back_inserter(simulation.faults));
  return simulation;
}

}  // namespace simulator
