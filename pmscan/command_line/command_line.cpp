#include "pmscan/command_line/command_line.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <type_traits>
#include <utility>

#include "pmscan/command_line/failure.h"
#include "pmscan/command_line/named_files.h"
#include "pmscan/command_line/option_table.h"
#include "pmscan/command_line/scan_words.h"
#include "pmscan/command_line/word_choice.h"
#include "pmscan/report/error_codes.h"
#include "pmscan/scan/scan_profile.h"
#include "simulator/catalog/nearest_name.h"
#include "simulator/catalog/simulation.h"

namespace pmscan {
namespace {

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
  for (const CommandRow& row : kCommands) {
    CLI::App& command = *app.get_subcommand(std::string(row.name));
    CLI::Option* const data = command.get_option_no_throw("--capture-data");
    if (data != nullptr) data->needs(command.get_option("--capture"));
  }
  app.get_subcommand("scan")->get_option("--batch")->excludes("--output");
  app.get_subcommand("convert")->get_option("--output")->required();
  app.get_subcommand("report")->get_option("--output")->required();
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
    if (row.command == Command::kImport) {
      command.add_option("trace", program.words.trace)->required();
    }
    if (row.command == Command::kProfiles) {
      command.add_option("name", program.words.shownProfile);
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
    if (option->count() == 0 || !IsKept(name)) continue;
    given.push_back(ForAnyFolder({name, option->results().back()}));
  }
  return given;
}

// The options of the profile that those given besides do not overrule.
std::vector<KeptOption> ProfileOptions(const Program& program,
                                       const std::filesystem::path& folder) {
  std::vector<KeptOption> options = LoadProfile(folder, program.words.profile);
  const CLI::App& scan = *program.app.get_subcommand("scan");
  std::erase_if(options, [&](const KeptOption& kept) { return scan.count("--" + kept.name) > 0; });
  return options;
}

Options FinishScan(Program& program) {
  Options& options = program.words;
  ReadScanWords(program.words, options);
  RequireOwnFiles(program.words);
  options.keptOptions = GivenOptions(*program.app.get_subcommand("scan"));
  return options;
}

// Takes the profile by itself, so that an error of it is told with its file.
void RequireSound(const std::filesystem::path& folder, const std::string& profile) {
  std::vector<std::string> arguments{"scan", "-o", "page.png"};
  for (const KeptOption& kept : LoadProfile(folder, profile)) {
    arguments.push_back("--" + kept.name + "=" + kept.value);
  }
  const std::string file = ProfileFile(folder, profile);
  Program alone;
  try {
    Parse(alone, arguments);
    FinishScan(alone);
  } catch (const CLI::ParseError& error) {
    throw Failure(kProfile, file + ": " + error.what());
  } catch (const Failure& failure) {
    if (failure.code == kUsage) throw Failure(kProfile, file + ": " + failure.what());
  }
}

Options FinishWithProfile(const Program& program, std::vector<std::string> arguments,
                          const std::filesystem::path& folder) {
  RequireSound(folder, program.words.profile);
  Program merged;
  CommandWords& words = merged.words;
  for (const KeptOption& kept : ProfileOptions(program, folder)) {
    arguments.push_back("--" + kept.name + "=" + kept.value);
    const std::string file = FileNamedBy(kept);
    if (!file.empty()) words.profileNames.push_back(file);
  }
  Parse(merged, arguments);
  words.command = program.words.command;
  words.capture = program.words.capture;
  words.profileFile = ProfileFile(folder, program.words.profile);
  try {
    return FinishScan(merged);
  } catch (const Failure& failure) {
    throw WithProfile(failure, words);
  }
}

// The options of a command line without help in it.
Options OptionsOf(Program& program, const std::vector<std::string>& arguments,
                  const std::filesystem::path& profileFolder) {
  CommandWords& words = program.words;
  Parse(program, arguments);
  words.command = CommandOf(program.app);
  words.capture = {words.captureFile, words.keepsImageData};
  if (words.command == Command::kFocus) {
    words.focus = ParseFocus(words.focusText.empty() ? "auto" : words.focusText);
  }
  if (words.command != Command::kScan) {
    RequireOwnFiles(words);
    return words;
  }
  if (words.profile.empty()) return FinishScan(program);
  return FinishWithProfile(program, arguments, profileFolder);
}

// What is told of a word that nobody knows; empty when there is none, and where a subcommand is
// missing and nothing like it is there.
std::string UnknownWord(const CLI::App& app) {
  const std::vector<std::string> unknown = app.remaining(true);
  if (unknown.empty()) return {};
  const Command command = CommandOf(app);
  std::vector<std::string_view> names{"--help"};
  if (command == Command::kHelp) {
    for (const CommandRow& row : kCommands) names.push_back(row.name);
    names.emplace_back("--version");
  }
  for (const OptionRow& row : kOptions) {
    if ((row.commands & Bit(command)) != 0) names.push_back(LongName(row));
  }
  const std::string word = unknown.front().substr(0, unknown.front().find('='));
  const std::string question = DidYouMean(word, names);
  if (!question.empty()) return "There is no \"" + word + "\"; " + question;
  if (command == Command::kHelp) return {};
  return word.starts_with('-') ? "There is no \"" + word + "\"."
                               : "Nothing takes \"" + word + "\".";
}

std::string SubcommandNames() {
  std::string names;
  for (const CommandRow& row : kCommands) {
    if (names.ends_with(row.name)) continue;
    names.append(names.empty() ? "" : ", ").append(row.name);
  }
  return names;
}

// Of a subcommand that was called without one of its files.
std::string MissingFile(Command command, bool isOutput) {
  const CommandRow& row =
      *std::find_if(kCommands.begin(), kCommands.end(),
                    [=](const CommandRow& each) { return each.command == command; });
  const char* const file = row.usage.starts_with("FILE") ? "a capture to read" : "a trace to read";
  const std::string name(row.name);
  return "Subcommand " + name + " needs " + (isOutput ? "a file to write" : file) + ": pmscan " +
         name + " " + std::string(row.usage);
}

// What is wrong with the command line, in words of our own where the library's tell too little.
std::string Complaint(const CLI::App& app, const CLI::ParseError& error) {
  if (std::string unknown = UnknownWord(app); !unknown.empty()) return unknown;
  const Command command = CommandOf(app);
  if (command == Command::kHelp) {
    const std::vector<std::string> words = app.remaining(true);
    return (words.empty() ? "A subcommand is missing"
                          : "There is no subcommand \"" + words.front() + "\"") +
           "; it can be: " + SubcommandNames() + ".";
  }
  std::string text = error.what();
  if (dynamic_cast<const CLI::RequiredError*>(&error) != nullptr) {
    return MissingFile(command, text.starts_with("--output"));
  }
  if (dynamic_cast<const CLI::ArgumentMismatch*>(&error) == nullptr) return text;
  return text.substr(0, text.find(':')) + " needs a value behind it.";
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
    throw Failure(kUsage, Complaint(program.app, error));
  }
}

bool IsSimulatorName(const std::string& device) {
  return simulator::BeginsWithName(device, simulator::kDevicePrefix);
}

std::string SimulatorName(const std::string& device) {
  if (IsSimulatorName(device)) return device.substr(simulator::kDevicePrefix.size());
  throw Failure(kUsage, "There is no device \"" + device +
                            "\": --device names a simulated scanner, as in sim:extended, a "
                            "captured one, as in capture:FILE, or a still-image device, as in "
                            "sti:NAME; pmscan devices lists those that there are.");
}

}  // namespace pmscan
