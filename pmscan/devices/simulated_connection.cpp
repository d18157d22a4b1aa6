#include "pmscan/devices/simulated_connection.h"

#include <algorithm>
#include <iostream>
#include <iterator>
#include <stdexcept>
#include <utility>

#include "pmscan/command_line/failure.h"
#include "pmscan/devices/scanner_files.h"
#include "pmscan/pictures/picture_reader.h"
#include "pmscan/report/error_codes.h"
#include "simulator/catalog/catalog.h"
#include "simulator/catalog/profile.h"
#include "simulator/catalog/profile_error.h"
#include "simulator/page/test_page.h"

namespace pmscan {
namespace {

// The test page is drawn as finely as it is scanned, within what looks well and is quickly drawn.
constexpr std::uint32_t kCoarsestTestPage = 300;
constexpr std::uint32_t kFinestTestPage = 600;

bool NeedsPictures(const Options& options) {
  return options.command == Command::kScan && !options.isDryRun;
}

simulator::Picture PictureOnBed(const Options& options) {
  if (!NeedsPictures(options)) return {};
  if (!options.original.empty()) return ReadPicture(options.original);
  return simulator::RenderTestPage(
      std::clamp(options.dotsPerInch, kCoarsestTestPage, kFinestTestPage));
}

using Simulation = SimulatedConnection::Simulation;

Simulation FromCatalog(const std::string& name, const Options& options) {
  try {
    return {simulator::ModelIdOf(name), simulator::MakeScanner(name, PictureOnBed(options)), {}};
  } catch (const std::invalid_argument& reason) {
    std::string sentence = std::string("--device: ") + reason.what();
    if (!sentence.ends_with('?')) sentence += '.';
    throw Failure(kUsage, sentence + " pmscan devices lists the scanners.");
  }
}

// A scan that is only tried out, and no scan, need no pictures.
simulator::Picture ReadPictureFor(const Options& options, const std::string& file) {
  return NeedsPictures(options) ? ReadPicture(file) : simulator::Picture{};
}

Simulation FromProfile(const std::string& file, const Options& options) {
  simulator::Profile profile = simulator::ReadProfile(file);
  if (!options.original.empty()) profile.originalFile.clear();
  const bool bringsOriginal = !profile.originalFile.empty();
  auto scanner = simulator::MakeScanner(
      profile, [&](const std::string& picture) { return ReadPictureFor(options, picture); },
      bringsOriginal ? simulator::Picture{} : PictureOnBed(options));
  return {profile.modelId, std::move(scanner), std::move(profile.faults)};
}

Simulation Simulate(const Options& options) {
  const std::string name = SimulatorName(options.device);
  try {
    Simulation simulation = IsScannerFileName(name) ? FromProfile(ScannerFile(name), options)
                                                    : FromCatalog(name, options);
    if (options.faults.empty()) return simulation;
    std::vector<simulator::Fault> faults = simulator::ReadFaultScript(options.faults);
    std::move(simulation.faults.begin(), simulation.faults.end(), std::back_inserter(faults));
    simulation.faults = std::move(faults);
    return simulation;
  } catch (const simulator::ProfileError& error) {
    throw Failure(kSimulation, error.what());
  }
}

void PrintAll(const std::vector<std::string>& sentences, const char* label) {
  for (const std::string& sentence : sentences) std::cerr << label << sentence << "\n";
}

int Report(std::uint32_t code) {
  std::cerr << Describe(Failure(code));
  return FindErrorCode(code).ExitCode();
}

}  // namespace

SimulatedConnection::SimulatedConnection(const Options& options)
    : simulation_(Simulate(options)), cable_(*simulation_.scanner, simulation_.faults) {}

int SimulatedConnection::Judge(int exitCode) const {
  const simulator::Scanner& scanner = *simulation_.scanner;
  const std::vector<std::string> unreached = cable_.Unreached();
  PrintAll(unreached, "Note: this fault did not strike: ");
  if (exitCode != 0) PrintAll(scanner.Refusals(), "  The scanner refused: ");
  PrintAll(scanner.Violations(), "Violation: ");
  if (!scanner.Violations().empty()) return Report(kProtocolViolation);
  return exitCode == 0 && !unreached.empty() ? Report(kFaultMissed) : exitCode;
}

}  // namespace pmscan
