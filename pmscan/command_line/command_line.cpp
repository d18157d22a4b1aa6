#include "pmscan/command_line/command_line.h"

#include <CLI/CLI.hpp>

#include "pmscan/command_line/failure.h"
#include "pmscan/report/error_codes.h"
#include "pmscan/scan/scan_profile.h"

namespace pmscan {
namespace {

constexpr std::string_view kSimulatorPrefix = "sim:";
constexpr std::uint32_t kMostDotsPerInch = 65535;
constexpr std::uint32_t kMostSeconds = 3600;
constexpr std::uint32_t kMostPages = 9999;

// The texts that become something else once all is read.
struct ScanTexts {
  std::string mode = "colour";
  std::string source = "flatbed";
  std::string area;
  std::string output;
  std::string batch;
  std::string progress;
  std::string profile;
};

// The parser and what it fills.
struct Program {
  Options options;
  ScanTexts texts;
  CLI::App app;
  CLI::App* scan = nullptr;
  CLI::App* info = nullptr;
  CLI::App* devices = nullptr;
  CLI::App* replay = nullptr;
  CLI::App* decode = nullptr;
  CLI::App* convert = nullptr;
};

void DeclareCapture(CLI::App& command, Options& options) {
  CLI::Option* const capture = command.add_option("--capture", options.capture.file);
  command.add_flag("--capture-data", options.capture.keepsImageData)->needs(capture);
  command.add_flag("--overwrite", options.mayOverwrite);
}

void DeclareReplay(CLI::App& command, Options& options) {
  command.add_option("file", options.readCapture)->required();
  command.add_option("--dll", options.modulePath);
  command.add_option("-o,--output", options.replayedPicture);
  command.add_flag("--overwrite", options.mayOverwrite);
  command.add_flag("--tolerant", options.isTolerant);
}

void DeclareDecode(CLI::App& command, Options& options) {
  command.add_option("file", options.readCapture)->required();
}

void DeclareConvert(CLI::App& command, Options& options) {
  DeclareDecode(command, options);
  command.add_option("-o,--output", options.convertedFile)->required();
  command.add_flag("--overwrite", options.mayOverwrite);
}

void DeclareInfo(CLI::App& command, Options& options) {
  DeclareCapture(command, options);
  command.add_option("--device", options.device);
  command.add_option("--faults", options.faults);
  command.add_option("--dll", options.modulePath);
  command.add_flag("--json", options.isJson);
}

void DeclarePages(CLI::App& command, Options& options, ScanTexts& texts) {
  command.add_option("-o,--output", texts.output);
  command.add_option("--batch", texts.batch)->excludes("--output");
  command.add_option("--pages", options.pages)->check(CLI::Range(1u, kMostPages));
  // The text in braces is what the option alone stands for.
  command.add_flag("--wait-for-paper{60}", options.paperSeconds);
  command.add_flag("--dry-run", options.isDryRun);
}

void DeclareScan(CLI::App& command, Options& options, ScanTexts& texts) {
  DeclareInfo(command, options);
  DeclarePages(command, options, texts);
  command.add_option("--mode", texts.mode);
  command.add_option("--resolution", options.dotsPerInch)->check(CLI::Range(1u, kMostDotsPerInch));
  command.add_option("--area", texts.area);
  command.add_option("--source", texts.source);
  command.add_option("--original", options.original);
  command.add_option("--warm-up", options.warmUpSeconds)->check(CLI::Range(0u, kMostSeconds));
  command.add_flag("--mirror", options.isMirrored);
  command.add_flag("--invert", options.isInverted);
  command.add_option("--progress", texts.progress);
  command.add_option("--profile", texts.profile);
  command.add_option("--save-profile", options.savedProfile);
}

void Declare(Program& program) {
  program.scan = program.app.add_subcommand("scan");
  program.info = program.app.add_subcommand("info");
  program.devices = program.app.add_subcommand("devices");
  program.replay = program.app.add_subcommand("replay");
  program.decode = program.app.add_subcommand("decode");
  program.convert = program.app.add_subcommand("convert");
  program.app.require_subcommand(1);
  DeclareScan(*program.scan, program.options, program.texts);
  DeclareInfo(*program.info, program.options);
  DeclareReplay(*program.replay, program.options);
  DeclareDecode(*program.decode, program.options);
  DeclareConvert(*program.convert, program.options);
  program.devices->add_flag("--json", program.options.isJson);
}

void Parse(Program& program, const std::vector<std::string>& arguments) {
  Declare(program);
  // The library takes the arguments last to first.
  program.app.parse(std::vector<std::string>(arguments.rbegin(), arguments.rend()));
}

Command CommandOf(const Program& program) {
  if (program.scan->parsed()) return Command::kScan;
  if (program.replay->parsed()) return Command::kReplay;
  if (program.decode->parsed()) return Command::kDecode;
  if (program.convert->parsed()) return Command::kConvert;
  return program.info->parsed() ? Command::kInfo : Command::kDevices;
}

// The options of the scan that were given and that profiles keep.
std::vector<KeptOption> GivenOptions(const CLI::App& scan) {
  std::vector<KeptOption> given;
  for (const CLI::Option* option : scan.get_options()) {
    const std::string name = option->get_single_name();
    if (option->count() > 0 && IsKept(name)) given.push_back({name, option->results().back()});
  }
  return given;
}

// The arguments with those of the profile that they do not overrule.
std::vector<std::string> WithProfile(const Program& program, std::vector<std::string> arguments,
                                     const std::filesystem::path& folder) {
  for (const KeptOption& kept : LoadProfile(folder, program.texts.profile)) {
    const bool isGiven = program.scan->get_option("--" + kept.name)->count() > 0;
    if (!isGiven) arguments.push_back("--" + kept.name + "=" + kept.value);
  }
  return arguments;
}

void ReadProgress(const std::string& text, Options& options) {
  if (text.empty()) return;
  options.progress = FindProgressStyle(text);
  if (options.progress) return;
  throw Failure(kUsage,
                "There is no progress \"" + text + "\"; --progress can be: bar, json, none.");
}

void ReadModeAndSource(const ScanTexts& texts, Options& options) {
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
}

void ReadOutput(const CLI::App& scan, const ScanTexts& texts, Options& options) {
  const bool isBatch = !texts.batch.empty();
  const std::string& name = isBatch ? texts.batch : texts.output;
  options.hasOutput = !name.empty();
  if (!options.hasOutput) return;
  options.format = FormatByFileName(name);
  options.names =
      isBatch && PageNames::IsPattern(name) ? PageNames::Numbered(name) : PageNames::Single(name);
  if (isBatch && scan.count("--pages") == 0) options.pages.reset();
}

void ReadScanTexts(const CLI::App& scan, const ScanTexts& texts, Options& options) {
  ReadModeAndSource(texts, options);
  ReadProgress(texts.progress, options);
  ReadOutput(scan, texts, options);
  if (!texts.area.empty()) options.area = ParseArea(texts.area);
}

void RequireOutput(const Options& options) {
  if (options.hasOutput || options.isDryRun || !options.savedProfile.empty()) return;
  throw Failure(kUsage, "A scan needs a file for its picture: -o FILE, or --batch NAME.");
}

// One file holds several pages only when its format does.
void RequirePagesFit(const Options& options) {
  const bool hasSeveral = !options.pages || *options.pages > 1;
  if (options.names.AreNumbered() || !hasSeveral || !options.hasOutput) return;
  if (options.format.container == Container::kTiff) return;
  throw Failure(kUnsupported, "A " + std::string(options.format.name) +
                                  " file holds one page: number the files, as in --batch "
                                  "page%03d." +
                                  std::string(options.format.extension) +
                                  ", or write a .tif file.");
}

void RequireEnd(const Options& options) {
  const bool isFeeder = options.source.option == kFeederOption;
  if (!options.pages && !isFeeder) {
    throw Failure(kUnsupported,
                  "Only the feeder runs out of paper: say with --pages how many pages "
                  "to scan, or add --source feeder.");
  }
  if (options.paperSeconds > 0 && !isFeeder) {
    throw Failure(kUnsupported, "--wait-for-paper is for the feeder: add --source feeder.");
  }
}

void RequireConsistent(const Options& options) {
  RequireOutput(options);
  RequireHolds(options.format, options.mode);
  RequirePagesFit(options);
  RequireEnd(options);
  if (options.paperSeconds > kMostSeconds) {
    throw Failure(kUsage, "--wait-for-paper can wait up to " + std::to_string(kMostSeconds) +
                              " seconds, not " + std::to_string(options.paperSeconds) + ".");
  }
  if (options.isInverted && options.mode.layout != PixelLayout::kBlackWhite) {
    throw Failure(kUnsupported, "--invert is for line art: add --mode lineart, or leave it out.");
  }
}

void FinishScan(Program& program, const std::filesystem::path& profileFolder) {
  Options& options = program.options;
  ReadScanTexts(*program.scan, program.texts, options);
  RequireConsistent(options);
  if (options.savedProfile.empty()) return;
  SaveProfile(profileFolder, options.savedProfile, GivenOptions(*program.scan),
              options.mayOverwrite);
}

}  // namespace

Options ParseCommandLine(const std::vector<std::string>& arguments,
                         const std::filesystem::path& profileFolder) {
  try {
    Program program;
    Parse(program, arguments);
    program.options.command = CommandOf(program);
    if (program.options.command != Command::kScan) return program.options;
    if (program.texts.profile.empty()) {
      FinishScan(program, profileFolder);
      return program.options;
    }
    Program merged;
    Parse(merged, WithProfile(program, arguments, profileFolder));
    merged.options.command = Command::kScan;
    FinishScan(merged, profileFolder);
    return merged.options;
  } catch (const CLI::CallForHelp&) {
    return Options{};
  } catch (const CLI::ParseError& error) {
    throw Failure(kUsage, error.what());
  }
}

bool IsSimulatorName(const std::string& device) {
  return device.starts_with(kSimulatorPrefix);
}

std::string SimulatorName(const std::string& device) {
  if (IsSimulatorName(device)) return device.substr(kSimulatorPrefix.size());
  throw Failure(kUsage, "There is no device \"" + device +
                            "\": --device names a simulated scanner, as in sim:extended, or a "
                            "still-image device, as in sti:NAME; pmscan devices lists both.");
}

std::string ModelIdOf(const std::string& simulatorName) {
  const std::string plain = simulatorName.substr(0, simulatorName.find('+'));
  const std::size_t colon = plain.find(':');
  return colon == std::string::npos ? std::string() : plain.substr(colon + 1);
}

}  // namespace pmscan
