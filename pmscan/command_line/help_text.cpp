#include "pmscan/command_line/help_text.h"

#include <algorithm>

#include "pmscan/command_line/option_table.h"
#include "pmscan/report/error_codes.h"

namespace pmscan {
namespace {

constexpr std::size_t kUsageColumn = 34;
constexpr std::size_t kOptionColumn = 8;
constexpr std::size_t kExitCodeColumn = 5;
constexpr std::size_t kColumns = 80;

constexpr std::string_view kExamples = R"(
Examples
  pmscan scan -o page.png
  pmscan scan -o page.tif --mode deep-colour --resolution 600
  pmscan scan -o stamp.png --area 1in,1in,50mm,2in
  pmscan scan -o letter.tif --mode lineart --area a4 --threshold 110
  pmscan scan -o photo.png --mode lineart --halftone dots
  pmscan scan --batch letter.pdf --source feeder --device sim:extended:QM2500
  pmscan scan --mode lineart --resolution 200 --save-profile letters
  pmscan scan -o letter.tif --profile letters
  pmscan scan -o page.png --resolution 600 --dry-run
  pmscan info --device sim:extended:QM2700
  pmscan scan -o page.png --capture jam.capture
  pmscan replay jam.capture
  pmscan decode jam.capture
  pmscan convert jam.capture -o jam.pcapng
  pmscan report jam.capture -o jam.html
)";

// The line in pieces that fit behind the indent.
std::string Wrapped(std::string line, const std::string& indent) {
  const std::size_t most = kColumns - indent.size();
  std::string text;
  while (line.size() > most) {
    const std::size_t blank = line.rfind(' ', most);
    if (blank == std::string::npos) break;
    text += line.substr(0, blank) + "\n" + indent;
    line.erase(0, blank + 1);
  }
  return text + line;
}

// The row of a table: what is named, and its lines beside or below it.
std::string Row(std::string name, std::string_view lines, std::size_t column) {
  const std::string indent(column + 2, ' ');
  name.insert(0, 2, ' ');
  if (name.size() >= indent.size()) {
    name.append("\n").append(indent);
  } else {
    name.resize(indent.size(), ' ');
  }
  for (std::size_t end = 0; end != std::string_view::npos; lines.remove_prefix(end + 1)) {
    end = lines.find('\n');
    name += Wrapped(std::string(lines.substr(0, end)), indent);
    if (end == std::string_view::npos) break;
    name += "\n" + indent;
  }
  return name + "\n";
}

// The ways to call a subcommand; those of all for kHelp.
std::string Usage(Command command) {
  std::string text = "Synopsis\n";
  for (const CommandRow& row : kCommands) {
    if (command != Command::kHelp && command != row.command) continue;
    text += Row("pmscan " + std::string(row.name) + " " + std::string(row.usage), row.description,
                kUsageColumn);
  }
  return text;
}

// Those of the options that `belongs` chooses, under a headline.
template <typename Choice>
std::string OptionsText(const std::string& headline, Choice belongs) {
  std::string text = "\n" + headline + "\n";
  for (const OptionRow& row : kOptions) {
    if (belongs(row)) text += Row(Synopsis(row), row.help, kOptionColumn);
  }
  return text;
}

std::string NameOf(Command command) {
  const auto* const row =
      std::find_if(kCommands.begin(), kCommands.end(),
                   [=](const CommandRow& each) { return each.command == command; });
  return std::string(row->name);
}

bool IsFor(const OptionRow& row, Command command) {
  return (row.commands & Bit(command)) != 0;
}

bool IsShared(const OptionRow& row) {
  return IsFor(row, Command::kScan) && IsFor(row, Command::kInfo);
}

// The subcommands that take options of scan and info, as in "convert --overwrite".
std::string OptionsOfOthers() {
  std::string text = "\nOf these options others take\n";
  for (const Command command : {Command::kDevices, Command::kReplay, Command::kConvert,
                                Command::kReport, Command::kImport}) {
    std::string names;
    for (const OptionRow& row : kOptions) {
      if (!IsShared(row) || !IsFor(row, command)) continue;
      names.append(names.empty() ? "" : ", ").append(LongName(row));
    }
    text += Row(NameOf(command), names, kOptionColumn);
  }
  return text;
}

// Options that several subcommands take stand with scan and info only; OptionsOfOthers names them.
std::string AllOptions() {
  std::string text = OptionsText("Options of scan, info, focus, feed, eject and reset", &IsShared) +
                     OptionsOfOthers();
  for (const auto& [headline, command] : {std::pair("Options of scan", Command::kScan),
                                          std::pair("Options of focus", Command::kFocus),
                                          std::pair("Options of profiles", Command::kProfiles),
                                          std::pair("Options of replay", Command::kReplay),
                                          std::pair("Options of decode", Command::kDecode),
                                          std::pair("Options of convert", Command::kConvert),
                                          std::pair("Options of report", Command::kReport),
                                          std::pair("Options of import", Command::kImport)}) {
    text += OptionsText(headline, [wanted = command](const OptionRow& row) {
      return IsFor(row, wanted) && !IsShared(row);
    });
  }
  return text;
}

std::string ExitCodes() {
  std::string text = "\nExit codes\n    0  done\n";
  for (const ErrorCode& row : kErrorCodes) {
    const std::string number = std::to_string(row.ExitCode());
    text += Row(std::string(3 - number.size(), ' ') + number, row.meaning, kExitCodeColumn);
  }
  return text;
}

}  // namespace

std::string Synopsis(const OptionRow& row) {
  std::string text(row.names);
  if (const std::size_t comma = text.find(','); comma != std::string::npos) {
    text.insert(comma + 1, " ");
  }
  const std::string value(row.value);
  if (!row.alone.empty()) return text + "[=" + value + "]";
  return IsSwitch(row) ? text : text + " " + value;
}

std::string HelpText(Command command) {
  if (command != Command::kHelp) {
    return Usage(command) +
           OptionsText("Options", [=](const OptionRow& row) { return IsFor(row, command); }) +
           "\npmscan --help tells of the other subcommands and of the exit codes.\n";
  }
  return "pmscan - scan a page with a scanner of the Pmddb832 module\n\n" + Usage(command) +
         Row("pmscan SUBCOMMAND --help", "tell its options", kUsageColumn) +
         Row("pmscan --help", "print this page", kUsageColumn) +
         Row("pmscan --version", "print the version", kUsageColumn) + std::string(kExamples) +
         AllOptions() +
         "\nCtrl+C ends a scan: the scanner is cancelled, and the lines that came are kept.\n" +
         ExitCodes();
}

}  // namespace pmscan
