#include "pmscan/devices/simulated_connection.h"

#include <algorithm>
#include <iostream>
#include <stdexcept>
#include <utility>

#include "pmscan/command_line/console.h"
#include "pmscan/command_line/failure.h"
#include "pmscan/pictures/picture_reader.h"
#include "pmscan/report/error_codes.h"
#include "simulator/catalog/profile_error.h"
#include "simulator/page/test_page.h"

namespace pmscan {
namespace {

// The test page is drawn as finely as it is scanned, within what looks well and is quickly drawn.
constexpr std::uint32_t kCoarsestTestPage = 300;
constexpr std::uint32_t kFinestTestPage = 600;

// A scan that is only tried out, and no scan, need no pictures.
simulator::SimulationRequest RequestOf(const Options& options) {
  simulator::SimulationRequest request{.name = SimulatorName(options.device),
                                       .faultScript = options.faults,
                                       .original = options.original,
                                       .scannerFiles = ScannerFileFolder()};
  const bool needsPictures = options.command == Command::kScan && !options.isDryRun;
  request.readPicture = [=](const std::string& file) {
    return needsPictures ? ReadPicture(file) : simulator::Picture{};
  };
  const std::uint32_t dotsPerInch =
      std::clamp(options.dotsPerInch, kCoarsestTestPage, kFinestTestPage);
  request.drawTestPage = [=] {
    return needsPictures ? simulator::RenderTestPage(dotsPerInch) : simulator::Picture{};
  };
  return request;
}

simulator::Simulation Simulate(const Options& options) {
  try {
    return simulator::Simulate(RequestOf(options));
  } catch (const simulator::ProfileError& error) {
    throw Failure(kSimulation, error.what());
  } catch (const std::invalid_argument& reason) {
    std::string sentence = std::string("--device: ") + reason.what();
    if (!sentence.ends_with('?')) sentence += '.';
    throw Failure(kUsage, sentence + " pmscan devices lists the scanners.");
  }
}

void PrintAll(const std::vector<std::string>& sentences, const char* label) {
  for (const std::string& sentence : sentences) std::cerr << label << sentence << "\n";
}

}  // namespace

std::filesystem::path ScannerFileFolder() {
  return ProgramFolder() / "profiles";
}

SimulatedConnection::SimulatedConnection(const Options& options)
    : simulation_(Simulate(options)), cable_(*simulation_.scanner, simulation_.faults) {}

std::optional<Failure> SimulatedConnection::Judge(int exitCode) const {
  const simulator::Scanner& scanner = *simulation_.scanner;
  const std::vector<std::string> unreached = cable_.Unreached();
  PrintAll(unreached, "Note: this fault did not strike: ");
  if (exitCode != 0) PrintAll(scanner.Refusals(), "  The scanner refused: ");
  PrintAll(scanner.Violations(), "Violation: ");
  if (!scanner.Violations().empty()) return Failure(kProtocolViolation);
  if (exitCode != 0 || unreached.empty()) return std::nullopt;
  return Failure(kFaultMissed);
}

}  // namespace pmscan
