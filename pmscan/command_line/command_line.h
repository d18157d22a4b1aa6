#pragma once

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <vector>

#include "pmscan/captures/capture_choice.h"
#include "pmscan/command_line/progress.h"
#include "pmscan/pictures/picture_format.h"
#include "pmscan/scan/page_names.h"
#include "pmscan/scan/scan_area.h"
#include "pmscan/scan/scan_mode.h"
#include "pmscan/scan/scan_profile.h"
#include "pmscan/scan/scan_source.h"
#include "pmscan/settings/focus.h"
#include "pmscan/settings/image_settings.h"

namespace pmscan {

enum class Command {
  kHelp,
  kVersion,
  kInfo,
  kConvert,
  kImport,
  kDecode,
  kDevices,
  kProfiles,
  kReplay,
  kReport,
  kScan,
  kFeed,
  kEject,
  kReset,
  kFocus
};

inline constexpr std::uint32_t kAnyOnBus = 0xFFFFFFFF;

// What the user asks for. Texts are UTF-8.
struct Options {
  Command command = Command::kHelp;
  Command helpOf = Command::kHelp;  // the subcommand that help was asked for; kHelp: of all
  std::string device = "sim:extended";
  std::string faults;      // a script of faults; empty: none
  std::string modulePath;  // empty: the one beside the program
  bool isJson = false;     // the report is a JSON document
  CaptureChoice capture;   // without a file: none
  bool mayOverwrite = false;
  std::string readCapture;         // of decode, convert, report and replay
  std::string convertedFile;       // of convert and report
  bool leavesOutPictures = false;  // of a report
  // Of import.
  std::string trace;
  std::string importedFile;  // empty: beside the trace
  std::uint32_t traceBus = kAnyOnBus;
  std::uint32_t traceDevice = kAnyOnBus;
  // Of a replay.
  std::string replayedPicture;  // empty: none
  bool isTolerant = false;      // goes on behind a difference
  // Of a scan.
  bool hasOutput = false;  // false: nothing is scanned, only tried out or kept
  PageNames names;
  PictureFormat format{};
  std::uint32_t quality = 0;               // of JPEG, 1 to 100; 0: the usual one
  std::optional<std::uint32_t> pages = 1;  // nothing: until the feeder is empty
  ScanMode mode{};
  ScanSource source{};
  std::uint32_t dotsPerInch = 300;  // 1 to 65535; 0: the lowest that the scanner has
  std::optional<AreaRequest> area;
  std::string original;  // empty: the built-in test page
  std::uint32_t warmUpSeconds = 60;
  std::uint32_t paperSeconds = 0;  // how long to wait for paper in the feeder
  bool isMirrored = false;
  bool isInverted = false;
  ImageSettings image;
  std::optional<Focus> focus;  // nothing: the scanner's own
  bool isDryRun = false;
  bool keepsPartial = false;              // what came of a page that failed
  std::optional<ProgressStyle> progress;  // nothing: a bar on a terminal
  std::string savedProfile;               // the name under which to keep the settings; empty: none
  std::vector<KeptOption> keptOptions;    // what it keeps
  std::string profileFile;                // of the profile that was taken; empty: none
  std::vector<std::string> profileNames;  // the files that it names for this scan
  // Of profiles.
  std::string shownProfile;  // empty: all
  bool removesProfile = false;
};

// Reads the arguments behind the program's name. The settings of --profile come from
// `profileFolder`. Throws Failure: kUsage, kProfile, or kUnsupported when the options contradict
// each other.
Options ParseCommandLine(const std::vector<std::string>& arguments,
                         const std::filesystem::path& profileFolder = {});

// Whether the device is simulated: "sim:...".
bool IsSimulatorName(const std::string& device);

// The simulator's name of a device: "sim:extended:QM2700" gives "extended:QM2700". Throws
// Failure(kUsage) for a device of another kind.
std::string SimulatorName(const std::string& device);

}  // namespace pmscan
