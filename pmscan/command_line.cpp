#include "pmscan/command_line.h"

#include <CLI/CLI.hpp>

#include "pmscan/error_codes.h"
#include "pmscan/failure.h"

namespace pmscan {
namespace {

constexpr std::string_view kSimulatorPrefix = "sim:";
constexpr std::uint32_t kMostDotsPerInch = 65535;
constexpr std::uint32_t kMostWarmUpSeconds = 3600;

// The texts that become something else once all is read.
struct ScanTexts {
  std::string mode = "colour";
  std::string source = "flatbed";
  std::string area;
};

void DeclareInfo(CLI::App& command, Options& options) {
  command.add_option("--device", options.device);
  command.add_option("--dll", options.modulePath);
}

void DeclareScan(CLI::App& command, Options& options, ScanTexts& texts) {
  DeclareInfo(command, options);
  command.add_option("-o,--output", options.output)->required();
  command.add_option("--mode", texts.mode);
  command.add_option("--resolution", options.dotsPerInch)->check(CLI::Range(1u, kMostDotsPerInch));
  command.add_option("--area", texts.area);
  command.add_option("--source", texts.source);
  command.add_option("--original", options.original);
  command.add_option("--warm-up", options.warmUpSeconds)->check(CLI::Range(0u, kMostWarmUpSeconds));
  command.add_flag("--mirror", options.isMirrored);
  command.add_flag("--invert", options.isInverted);
  command.add_flag("--progress", options.showsProgress);
}

void ReadScanTexts(const ScanTexts& texts, Options& options) {
  const ScanMode* const mode = FindScanMode(texts.mode);
  if (mode == nullptr) {
    throw Failure(
        kUsage, "There is no mode \"" + texts.mode + "\"; --mode can be: " + ScanModeNames() + ".");
  }
  const ScanSource* const source = FindScanSource(texts.source);
  if (source == nullptr) {
    throw Failure(kUsage, "There is no source \"" + texts.source +
                              "\"; --source can be: flatbed, feeder, transparency.");
  }
  options.mode = *mode;
  options.source = *source;
  options.format = FormatByFileName(options.output);
  if (!texts.area.empty()) options.area = ParseArea(texts.area);
}

void RequireConsistent(const Options& options) {
  RequireHolds(options.format, options.mode);
  if (options.isInverted && options.mode.layout != PixelLayout::kBlackWhite) {
    throw Failure(kUnsupported, "--invert is for line art: add --mode lineart, or leave it out.");
  }
}

}  // namespace

Options ParseCommandLine(const std::vector<std::string>& arguments) {
  Options options;
  ScanTexts texts;
  CLI::App app;
  CLI::App* const scan = app.add_subcommand("scan");
  CLI::App* const info = app.add_subcommand("info");
  app.require_subcommand(1);
  DeclareScan(*scan, options, texts);
  DeclareInfo(*info, options);
  try {
    // The library takes the arguments last to first.
    app.parse(std::vector<std::string>(arguments.rbegin(), arguments.rend()));
  } catch (const CLI::CallForHelp&) {
    return Options{};
  } catch (const CLI::ParseError& error) {
    throw Failure(kUsage, error.what());
  }
  options.command = scan->parsed() ? Command::kScan : Command::kInfo;
  if (options.command == Command::kScan) {
    ReadScanTexts(texts, options);
    RequireConsistent(options);
  }
  return options;
}

std::string SimulatorName(const std::string& device) {
  if (device.starts_with(kSimulatorPrefix)) return device.substr(kSimulatorPrefix.size());
  throw Failure(kUsage, "There is no device \"" + device +
                            "\": --device names a simulated scanner, as in sim:extended.");
}

std::string ModelIdOf(const std::string& simulatorName) {
  const std::string plain = simulatorName.substr(0, simulatorName.find('+'));
  const std::size_t colon = plain.find(':');
  return colon == std::string::npos ? std::string() : plain.substr(colon + 1);
}

}  // namespace pmscan
