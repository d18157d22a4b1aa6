#include "pmscan/command_line/command_line.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <type_traits>
#include <utility>

#include "pmscan/command_line/failure.h"
#include "pmscan/command_line/option_table.h"
#include "pmscan/report/error_codes.h"
#include "pmscan/scan/scan_profile.h"
#include "simulator/catalog/nearest_name.h"

namespace pmscan {
namespace {

constexpr std::string_view kSimulatorPrefix = "sim:";

// The parser and what it fills.
struct Program {
  CommandWords words;
  CLI::App app;
};

// The name with which the library takes the option: braces hold what it alone stands for.
std::string ParserNames(const OptionRow& row) {
  std::string names(row.names);
  return row.alone.empty() ? names : names + "{" + std::string(row.alone) + "}";
}

CLI::Option* Declare(CLI::App& command, const OptionRow& row, bool& isOn) {
  return command.add_flag(ParserNames(row), isOn);
}

template <typename Value>
CLI::Option* Declare(CLI::App& command, const OptionRow& row, Value& value) {
  if constexpr (std::is_integral_v<Value>) {
    if (!row.alone.empty()) return command.add_flag(ParserNames(row), value);
  }
  return command.add_option(ParserNames(row), value);
}

void DeclareOptions(CLI::App& command, Command which, CommandWords& words) {
  for (const OptionRow& row : kOptions) {
    if ((row.commands & Bit(which)) == 0) continue;
    CLI::Option* const option =
        std::visit([&](auto* value) { return Declare(command, row, *value); }, row.place(words));
    if (row.most > 0) option->check(CLI::Range(row.least, row.most));
  }
}

// Which options need or exclude each other, and what must not be missing.
void DeclareBonds(CLI::App& app) {
  for (const char* const name : {"scan", "info"}) {
    CLI::App& command = *app.get_subcommand(name);
    command.get_option("--capture-data")->needs(command.get_option("--capture"));
  }
  app.get_subcommand("scan")->get_option("--batch")->excludes("--output");
  app.get_subcommand("convert")->get_option("--output")->required();
  app.require_subcommand(1);
}

void Declare(Program& program) {
  // A file's name may begin with a slash.
  program.app.allow_windows_style_options(false);
  program.app.set_version_flag("--version", std::string());
  Command last = Command::kHelp;
  for (const CommandRow& row : kCommands) {
    if (std::exchange(last, row.command) == row.command) continue;
    CLI::App& command = *program.app.add_subcommand(std::string(row.name));
    if (row.usage.starts_with("FILE")) {
      command.add_option("file", program.words.readCapture)->required();
    }
    DeclareOptions(command, row.command, program.words);
  }
  DeclareBonds(program.app);
}

void Parse(Program& program, const std::vector<std::string>& arguments) {
  Declare(program);
  // The library takes the arguments last to first.
  program.app.parse(std::vector<std::string>(arguments.rbegin(), arguments.rend()));
}

// kHelp when there is none.
Command CommandOf(const CLI::App& app) {
  for (const CommandRow& row : kCommands) {
    if (app.got_subcommand(std::string(row.name))) return row.command;
  }
  return Command::kHelp;
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
  for (const KeptOption& kept : LoadProfile(folder, program.words.profile)) {
    const bool isGiven = program.app.get_subcommand("scan")->count("--" + kept.name) > 0;
    if (!isGiven) arguments.push_back("--" + kept.name + "=" + kept.value);
  }
  return arguments;
}

std::string DidYouMean(std::string_view name) {
  return name.empty() ? "" : "did you mean \"" + std::string(name) + "\"?";
}

// The one of "lineart, grey" that was probably meant, as a question with a blank behind it.
std::string MeantBy(const std::string& name, std::string_view choices) {
  std::vector<std::string_view> words;
  for (std::size_t end = 0; end != std::string_view::npos; choices.remove_prefix(end + 2)) {
    end = choices.find(", ");
    words.push_back(choices.substr(0, end));
    if (end == std::string_view::npos) break;
  }
  const std::string question = DidYouMean(simulator::NearestName(name, words));
  return question.empty() ? question : question + " ";
}

// What `Find` finds under the name. Throws Failure(kUsage) that lists the words of the option when
// that is nothing.
template <typename Found>
Found Require(Found found, const char* option, const std::string& name) {
  if (found) return found;
  const auto* const row =
      std::find_if(kOptions.begin(), kOptions.end(),
                   [&](const OptionRow& each) { return LongName(each).substr(2) == option; });
  const std::string meant = MeantBy(name, row->choices());
  throw Failure(kUsage, std::string("There is no ") + option + " \"" + name + "\"; " + meant +
                            "--" + option + " can be: " + row->choices() + ".");
}

void ReadOutput(const CommandWords& words, Options& options) {
  const bool isBatch = !words.batch.empty();
  const std::string& name = isBatch ? words.batch : words.output;
  options.hasOutput = !name.empty();
  if (words.pageCount > 0) options.pages = words.pageCount;
  if (!options.hasOutput) return;
  options.format = FormatByFileName(name);
  options.names =
      isBatch && PageNames::IsPattern(name) ? PageNames::Numbered(name) : PageNames::Single(name);
  if (isBatch && words.pageCount == 0) options.pages.reset();
}

void ReadWords(const CommandWords& words, Options& options) {
  options.mode = *Require(FindScanMode(words.modeName), "mode", words.modeName);
  options.source = *Require(FindScanSource(words.sourceName), "source", words.sourceName);
  if (!words.progressName.empty()) {
    options.progress =
        Require(FindProgressStyle(words.progressName), "progress", words.progressName);
  }
  ReadOutput(words, options);
  if (!words.areaText.empty()) options.area = ParseArea(words.areaText);
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
  const bool isFeeder = options.source.code == pmddb832::kFeeder;
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
  if (options.isInverted && options.mode.layout != PixelLayout::kBlackWhite) {
    throw Failure(kUnsupported, "--invert is for line art: add --mode lineart, or leave it out.");
  }
}

Options FinishScan(Program& program, const std::filesystem::path& profileFolder) {
  Options& options = program.words;
  ReadWords(program.words, options);
  RequireConsistent(options);
  if (!options.savedProfile.empty()) {
    SaveProfile(profileFolder, options.savedProfile,
                GivenOptions(*program.app.get_subcommand("scan")), options.mayOverwrite);
  }
  return options;
}

// The options of a command line without help in it.
Options OptionsOf(Program& program, const std::vector<std::string>& arguments,
                  const std::filesystem::path& profileFolder) {
  CommandWords& words = program.words;
  Parse(program, arguments);
  words.command = CommandOf(program.app);
  words.capture = {words.captureFile, words.keepsImageData};
  if (words.command != Command::kScan) return words;
  if (words.profile.empty()) return FinishScan(program, profileFolder);
  Program merged;
  Parse(merged, WithProfile(program, arguments, profileFolder));
  merged.words.command = words.command;
  merged.words.capture = words.capture;
  return FinishScan(merged, profileFolder);
}

// What was probably meant by a word that nobody knows; empty when there is no such word.
std::string Suggestion(const CLI::App& app) {
  const std::vector<std::string> unknown = app.remaining(true);
  if (unknown.empty()) return {};
  const Command command = CommandOf(app);
  std::vector<std::string_view> names;
  if (command == Command::kHelp) {
    for (const CommandRow& row : kCommands) names.push_back(row.name);
  }
  for (const OptionRow& row : kOptions) {
    if ((row.commands & Bit(command)) != 0) names.push_back(LongName(row));
  }
  const std::string word = unknown.front().substr(0, unknown.front().find('='));
  const std::string question = DidYouMean(simulator::NearestName(word, names));
  return question.empty() ? question : "There is no \"" + word + "\"; " + question;
}

}  // namespace

Options ParseCommandLine(const std::vector<std::string>& arguments,
                         const std::filesystem::path& profileFolder) {
  Program program;
  Options asksForText;
  try {
    return OptionsOf(program, arguments, profileFolder);
  } catch (const CLI::CallForHelp&) {
    asksForText.helpOf = CommandOf(program.app);
    return asksForText;
  } catch (const CLI::CallForVersion&) {
    asksForText.command = Command::kVersion;
    return asksForText;
  } catch (const CLI::ParseError& error) {
    const std::string suggestion = Suggestion(program.app);
    throw Failure(kUsage, suggestion.empty() ? error.what() : suggestion);
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
