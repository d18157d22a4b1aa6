#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <string_view>
#include <variant>

#include "pmscan/command_line/command_line.h"

// What can stand on the command line: the parser, the help and saved profiles are made of these
// tables, and docs/pmscan.md is held against them.
namespace pmscan {

// A way to call a subcommand; one with several ways has a row for each.
struct CommandRow {
  Command command;
  std::string_view name;
  std::string_view usage;  // behind the name; begins with FILE where a file is wanted
  std::string_view description;
};

inline constexpr std::array kCommands{
    CommandRow{Command::kScan, "scan", "-o FILE [options]", "scan into a picture file"},
    CommandRow{Command::kScan, "scan", "--batch NAME [options]",
               "scan page by page until the feeder is empty"},
    CommandRow{Command::kInfo, "info", "[options]", "tell what the scanner is and has"},
    CommandRow{Command::kFocus, "focus", "[options]", "focus the scanner"},
    CommandRow{Command::kFeed, "feed", "[options]", "draw a page into the feeder"},
    CommandRow{Command::kEject, "eject", "[options]", "throw out the page in the feeder"},
    CommandRow{Command::kReset, "reset", "[options]", "put the scanner back to its beginning"},
    CommandRow{Command::kDevices, "devices", "[--json]",
               "list the scanners that --device can name"},
    CommandRow{Command::kProfiles, "profiles", "[NAME] [--remove]",
               "list the saved profiles; tell what is in one, or remove it"},
    CommandRow{Command::kReplay, "replay", "FILE [options]",
               "play a capture against the module and compare"},
    CommandRow{Command::kDecode, "decode", "FILE [--json]", "tell what was said in a capture"},
    CommandRow{Command::kConvert, "convert", "FILE -o FILE.pcapng",
               "write a capture for Wireshark"},
    CommandRow{Command::kReport, "report", "FILE -o FILE.html",
               "tell a capture as a page for the browser"},
    CommandRow{Command::kImport, "import", "TRACE [options]",
               "make a capture of what was traced on a USB"},
};

// The options with those of their texts that become something else once all is read.
struct CommandWords : Options {
  std::string captureFile;
  bool keepsImageData = false;
  std::string output;
  std::string batch;
  std::string formatName;
  std::uint32_t pageCount = 0;  // 0: not given
  std::string modeName = "colour";
  std::string sourceName = "flatbed";
  std::string areaText;
  std::string progressName;
  std::uint32_t resolution = 0;  // 0: not given
  std::uint32_t threshold = 0;   // likewise
  std::int32_t brightness = 0;
  std::int32_t sharpness = 0;
  std::uint32_t zoom = 100;
  bool isPreview = false;
  bool keepsPaper = false;
  std::string halftoneName = "none";
  std::string gammaText;  // of the texts empty stands for not given
  std::string gammaFile;
  std::string matrixFile;
  std::string channelName;
  std::string focusText;
  std::string profile;
};

// Where the value of an option goes.
using ValuePlace = std::variant<std::string*, std::uint32_t*, std::int32_t*, bool*>;

template <auto member>
ValuePlace At(CommandWords& words) {
  return &(words.*member);
}

constexpr unsigned Bit(Command command) {
  return 1u << static_cast<unsigned>(command);
}

enum class OptionKind { kGiven, kKept };  // whether saved profiles keep it

struct OptionRow {
  unsigned commands;  // Bit of each that takes it
  OptionKind kind;
  std::string_view names;  // "-o,--output"
  std::string_view value;  // "FILE"; empty for a switch
  ValuePlace (*place)(CommandWords&);
  std::string_view help;               // lines
  std::int32_t least = 0;              // of a number
  std::int32_t most = 0;               // 0: any
  std::string_view alone{};            // what the option means without a value; empty: needs one
  std::string (*choices)() = nullptr;  // the words that it takes, as in "bar, json, none"
};

namespace option_rows {

inline constexpr unsigned kScan = Bit(Command::kScan);
inline constexpr unsigned kReplay = Bit(Command::kReplay);
inline constexpr unsigned kConvert = Bit(Command::kConvert);
inline constexpr unsigned kReport = Bit(Command::kReport);
inline constexpr unsigned kImport = Bit(Command::kImport);
inline constexpr unsigned kScanner = kScan | Bit(Command::kInfo) | Bit(Command::kFocus) |
                                     Bit(Command::kFeed) | Bit(Command::kEject) |
                                     Bit(Command::kReset);
inline constexpr OptionKind kGiven = OptionKind::kGiven;
inline constexpr OptionKind kKept = OptionKind::kKept;
using W = CommandWords;

// clang-format off
inline constexpr std::array kAll{
    OptionRow{kScanner, kKept, "--device", "NAME", &At<&W::device>,
              "the scanner: sim:extended or sim:standard, with :MODEL behind it\n"
              "for a certain model and +DEFECT for a faulty one; sim:FILE.json,\n"
              "a simulated scanner by its file; capture:FILE, a captured one; or\n"
              "sti:NAME, a still-image device of this system\n"
              "(default sim:extended)"},
    OptionRow{kScanner, kGiven, "--faults", "FILE", &At<&W::faults>,
              "a script of faults that strike on the cable of a simulated scanner"},
    OptionRow{kScanner | kReplay, kGiven, "--tolerant", "", &At<&W::isTolerant>,
              "go on behind a difference from the capture, and count them"},
    OptionRow{kScanner | kReplay, kGiven, "--dll", "PATH", &At<&W::modulePath>,
              "the module (default: the one beside this program)"},
    OptionRow{kScanner | kReplay | Bit(Command::kDevices), kGiven, "--json", "", &At<&W::isJson>,
              "print the report as JSON"},
    OptionRow{kScanner | kReplay, kGiven, "--capture", "FILE", &At<&W::captureFile>,
              "record all that host, module and scanner say to each other, as\n"
              "text; of the picture's data length and checksum only"},
    OptionRow{kScanner | kReplay, kGiven, "--capture-data", "", &At<&W::keepsImageData>,
              "record the picture's data too"},
    OptionRow{kScanner | kReplay | kConvert | kReport | kImport, kGiven, "--overwrite", "",
              &At<&W::mayOverwrite>,
              "replace files of the same name; without it nothing is done when one\n"
              "is there"},
    OptionRow{kScan, kGiven, "-o,--output", "FILE", &At<&W::output>,
              "the picture: .png, .tif, .tiff, .pdf, .bmp, .jpg or .jpeg; - for\n"
              "standard output, which takes one page and no report"},
    OptionRow{kScan, kKept, "--format", "FORMAT", &At<&W::formatName>,
              "png, tif, tiff, pdf, bmp, jpg or jpeg, whatever FILE ends in\n"
              "(default: what it ends in; png for -o -)", 0, 0, "", &FormatNames},
    OptionRow{kScan, kKept, "--quality", "N", &At<&W::quality>,
              "of JPEG, also in a .pdf file, 1 to 100 (default 85)", 1, 100},
    OptionRow{kScan, kGiven, "--batch", "NAME", &At<&W::batch>,
              "a file for each page, with its number for %d or %03d in NAME; or\n"
              "one .tif or .pdf file for all of them"},
    OptionRow{kScan, kKept, "--pages", "N", &At<&W::pageCount>,
              "how many pages at most, 1 to 9999 (default: one with -o, with\n"
              "--batch all that the feeder holds)", 1, 9999},
    OptionRow{kScan, kKept, "--wait-for-paper", "SECONDS", &At<&W::paperSeconds>,
              "how long to wait when the feeder is empty, 0 to 3600 (60 without a\n"
              "number)", 0, 3600, "60"},
    OptionRow{kScan, kKept, "--mode", "MODE", &At<&W::modeName>,
              "lineart      1 bit: black and white\n"
              "grey         8 bits\n"
              "colour       24 bits (default)\n"
              "colour12     12 bits, written as 24\n"
              "palette      216 fixed colours; not with extended commands\n"
              "deep-grey    16 bits, in .png, .tif and .pdf\n"
              "deep-colour  48 bits, in .png, .tif and .pdf", 0, 0, "", &ScanModeNames},
    OptionRow{kScan, kKept, "--resolution", "DPI", &At<&W::resolution>,
              "dots per inch, 1 to 65535 (default 300)", 1, 65535},
    OptionRow{kScan, kKept, "--area", "LEFT,TOP,WIDTH,HEIGHT", &At<&W::areaText>,
              "the part to scan, each length with its unit: in, mm, cm, px; or\n"
              "a paper size: a3 to a6, b4, b5, letter, legal, ledger,\n"
              "executive, statement (default: all that the source has)"},
    OptionRow{kScan, kKept, "--threshold", "LEVEL", &At<&W::threshold>,
              "of line art: grey is white from here on, 1 to 255", 1, 255},
    OptionRow{kScan, kKept, "--halftone", "NAME", &At<&W::halftoneName>,
              "of line art: none (default), fine, medium, coarse, dots,\n"
              "large-dots, lines, diagonals, mixed, or a number from 0 to 9", 0, 0, "",
              &HalftoneNames},
    OptionRow{kScan, kKept, "--brightness", "STEPS", &At<&W::brightness>,
              "darker or lighter, -3 to 3 (default 0)", -3, 3},
    OptionRow{kScan, kKept, "--sharpness", "STEPS", &At<&W::sharpness>,
              "softer or sharper, -2 to 2 (default 0)", -2, 2},
    OptionRow{kScan, kKept, "--gamma", "GAMMA", &At<&W::gammaText>,
              "1.0 (default), 2.2, 2.5, 2.8 or 3.0", 0, 0, "", &GammaNames},
    OptionRow{kScan, kKept, "--gamma-table", "FILE", &At<&W::gammaFile>,
              "256 numbers from 0 to 255 in the place of a gamma, or three times\n"
              "as many for red, green and blue"},
    OptionRow{kScan, kKept, "--color-matrix", "FILE", &At<&W::matrixFile>,
              "nine numbers from -128 to 127 that mix the colours anew"},
    OptionRow{kScan, kKept, "--channel", "COLOUR", &At<&W::channelName>,
              "scan one colour channel as grey: red, green or blue", 0, 0, "", &ChannelNames},
    OptionRow{kScan, kKept, "--zoom", "PERCENT", &At<&W::zoom>,
              "enlarge the picture, 50 to 200 percent (default 100)", 50, 200},
    OptionRow{kScan, kKept, "--preview", "", &At<&W::isPreview>,
              "scan quickly: at the lowest resolution, in mode grey with fewer\n"
              "tones"},
    OptionRow{kScan, kKept, "--focus", "POSITION", &At<&W::focusText>,
              "focus before: auto, or a position from -64 to 155"},
    OptionRow{kScan, kKept, "--keep-paper", "", &At<&W::keepsPaper>,
              "leave the last page in the feeder"},
    OptionRow{kScan, kKept, "--source", "SOURCE", &At<&W::sourceName>,
              "flatbed (default), feeder or transparency", 0, 0, "", &ScanSourceNames},
    OptionRow{kScan, kKept, "--mirror", "", &At<&W::isMirrored>, "swap left and right"},
    OptionRow{kScan, kKept, "--invert", "", &At<&W::isInverted>,
              "swap black and white, in mode lineart"},
    OptionRow{kScan, kKept, "--original", "FILE", &At<&W::original>,
              "the picture that lies on a simulated scanner\n"
              "(default: a built-in test page)"},
    OptionRow{kScan, kKept, "--warm-up", "SECONDS", &At<&W::warmUpSeconds>,
              "how long to wait for a scanner that warms up, 0 to 3600\n"
              "(default 60)", 0, 3600},
    OptionRow{kScan, kKept, "--progress", "STYLE", &At<&W::progressName>,
              "how far the scan is, on standard error: bar, json (an object a\n"
              "line) or none (default: bar on a terminal, else none)", 0, 0, "",
              &ProgressStyleNames},
    OptionRow{kScan, kKept, "--keep-partial", "", &At<&W::keepsPartial>,
              "keep what came of a page that failed"},
    OptionRow{kScan, kGiven, "--dry-run", "", &At<&W::isDryRun>,
              "scan nothing; print what a simulated scanner would be sent"},
    OptionRow{kScan, kGiven, "--save-profile", "NAME", &At<&W::savedProfile>,
              "keep the options of this scan, but for its files"},
    OptionRow{kScan, kGiven, "--profile", "NAME", &At<&W::profile>,
              "take the options that were kept; those given besides win"},
    OptionRow{Bit(Command::kFocus), kGiven, "--focus", "POSITION", &At<&W::focusText>,
              "where to: auto (default), or a position from -64 to 155"},
    OptionRow{Bit(Command::kProfiles), kGiven, "--remove", "", &At<&W::removesProfile>,
              "remove the profile"},
    OptionRow{kReplay, kGiven, "-o,--output", "FILE", &At<&W::replayedPicture>,
              "write the first picture of the capture, which was recorded with\n"
              "--capture-data, in full lines"},
    OptionRow{Bit(Command::kDecode), kGiven, "--json", "", &At<&W::isJson>,
              "print what was said as JSON, an object a line"},
    OptionRow{kConvert, kGiven, "-o,--output", "FILE", &At<&W::convertedFile>,
              "the pcapng file; the Wireshark dissector is in docs/wireshark"},
    OptionRow{kReport, kGiven, "-o,--output", "FILE", &At<&W::convertedFile>,
              "the page, one .html file that needs nothing else"},
    OptionRow{kReport, kGiven, "--no-pictures", "", &At<&W::leavesOutPictures>,
              "show the borders of the pages only, not what was scanned"},
    OptionRow{kImport, kGiven, "-o,--output", "FILE", &At<&W::importedFile>,
              "the capture (default: the trace's name with .capture)"},
    OptionRow{kImport, kGiven, "--bus", "NUMBER", &At<&W::traceBus>,
              "the bus that the scanner is at (default: where commands are sent)"},
    OptionRow{kImport, kGiven, "--device", "NUMBER", &At<&W::traceDevice>,
              "its address there (default: where commands are sent)"},
};
// clang-format on

}  // namespace option_rows

inline constexpr const auto& kOptions = option_rows::kAll;

// "--output": the name that begins with two dashes.
constexpr std::string_view LongName(const OptionRow& row) {
  return row.names.substr(row.names.find("--"));
}

constexpr bool IsSwitch(const OptionRow& row) {
  return row.value.empty();
}
constexpr bool IsNumber(const OptionRow& row) {
  return row.most > 0;
}

// "-o, --output FILE" and "--wait-for-paper[=SECONDS]", as help and documents have it.
std::string Synopsis(const OptionRow& row);

}  // namespace pmscan
