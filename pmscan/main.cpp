#include <algorithm>
#include <cstdint>
#include <exception>
#include <iostream>
#include <memory>
#include <stdexcept>

#include "pmscan/command_line.h"
#include "pmscan/console.h"
#include "pmscan/error_codes.h"
#include "pmscan/failure.h"
#include "pmscan/help_text.h"
#include "pmscan/imaging_component.h"
#include "pmscan/module_exports.h"
#include "pmscan/module_library.h"
#include "pmscan/picture_reader.h"
#include "pmscan/report.h"
#include "pmscan/scan_command.h"
#include "pmscan/session.h"
#include "simulator/catalog.h"
#include "simulator/test_page.h"

namespace pmscan {
namespace {

// The test page is drawn as finely as it is scanned, within what looks well and is quickly drawn.
constexpr std::uint32_t kCoarsestTestPage = 300;
constexpr std::uint32_t kFinestTestPage = 600;

simulator::Picture PictureOnBed(const Options& options) {
  if (options.command == Command::kInfo) return {};
  if (!options.original.empty()) return ReadPicture(options.original);
  return simulator::RenderTestPage(
      std::clamp(options.dotsPerInch, kCoarsestTestPage, kFinestTestPage));
}

std::unique_ptr<simulator::Scanner> MakeScanner(const Options& options) {
  const std::string name = SimulatorName(options.device);
  try {
    return simulator::MakeScanner(name, PictureOnBed(options));
  } catch (const std::invalid_argument& reason) {
    throw Failure(kUsage, std::string("--device: ") + reason.what() + ".");
  }
}

void Connect(simulator::Scanner& scanner, const Options& options,
             pmddb832::ScannerSettings& settings) {
  settings.deviceInterface = &scanner;
  settings.useDeviceInterface = 1;
  const std::string modelId = ModelIdOf(SimulatorName(options.device));
  std::copy_n(modelId.begin(), std::min(modelId.size(), sizeof(settings.modelId) - 1),
              settings.modelId);
}

void RunCommand(const Options& options, const ModuleExports& module,
                pmddb832::ScannerSettings& settings) {
  if (options.command == Command::kScan) return RunScanCommand(options, module, settings);
  const Session session(module, settings);
  std::cout << ScannerReport(module, settings);
}

int Report(const Failure& failure) {
  std::cerr << Describe(failure);
  return FindErrorCode(failure.code).exitCode;
}

void PrintAll(const std::vector<std::string>& sentences, const char* label) {
  for (const std::string& sentence : sentences) std::cerr << label << sentence << "\n";
}

// What the module did wrong weighs more than what went wrong.
int Judge(const simulator::Scanner& scanner, int exitCode) {
  if (exitCode != 0) PrintAll(scanner.Refusals(), "  The scanner refused: ");
  if (scanner.Violations().empty()) return exitCode;
  PrintAll(scanner.Violations(), "Violation: ");
  return Report(Failure(kProtocolViolation));
}

int RunWithScanner(const Options& options) {
  const std::unique_ptr<simulator::Scanner> scanner = MakeScanner(options);
  // The module reads the settings until it is unloaded, so they come first.
  pmddb832::ScannerSettings settings{};
  Connect(*scanner, options, settings);
  int exitCode = 0;
  try {
    const ModuleLibrary library(options.modulePath);
    RunCommand(options, BindExports([&](const char* name) { return library.Find(name); }),
               settings);
  } catch (const Failure& failure) {
    exitCode = Report(failure);
  }
  return Judge(*scanner, exitCode);
}

int Run() {
  const Options options = ParseCommandLine(CommandLineArguments());
  if (options.command == Command::kHelp) {
    std::cout << HelpText();
    return 0;
  }
  const ComApartment apartment;
  return RunWithScanner(options);
}

}  // namespace
}  // namespace pmscan

int main() {
  try {
    return pmscan::Run();
  } catch (const pmscan::Failure& failure) {
    return pmscan::Report(failure);
  } catch (const std::exception& error) {
    std::cerr << "pmscan: " << error.what() << "\n";
    return pmscan::FindErrorCode(pmscan::kUnknownError).exitCode;
  }
}
