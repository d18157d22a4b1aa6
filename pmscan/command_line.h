#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "pmscan/picture_format.h"
#include "pmscan/scan_area.h"
#include "pmscan/scan_mode.h"
#include "pmscan/scan_source.h"

namespace pmscan {

enum class Command { kHelp, kInfo, kScan };

// What the user asks for. Texts are UTF-8.
struct Options {
  Command command = Command::kHelp;
  std::string device = "sim:extended";
  std::string modulePath;  // empty: Pmddb832.dll beside the program
  std::string output;
  PictureFormat format{};
  ScanMode mode{};
  ScanSource source{};
  std::uint32_t dotsPerInch = 300;  // 1 to 65535
  std::optional<AreaRequest> area;
  std::string original;  // empty: the built-in test page
  std::uint32_t warmUpSeconds = 60;
  bool isMirrored = false;
  bool isInverted = false;
  bool showsProgress = false;
};

// Reads the arguments behind the program's name. Throws Failure: kUsage, or kUnsupported when the
// options contradict each other.
Options ParseCommandLine(const std::vector<std::string>& arguments);

// The simulator's name of a device: "sim:extended:QM2700" gives "extended:QM2700". Throws
// Failure(kUsage) for a device of another kind.
std::string SimulatorName(const std::string& device);

// The model id behind a simulator's name, empty when it names none: "extended:QM2700+pages=3"
// gives "QM2700".
std::string ModelIdOf(const std::string& simulatorName);

}  // namespace pmscan
