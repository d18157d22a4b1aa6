#include "pmscan/command_line/named_files.h"

#include <algorithm>
#include <system_error>
#include <vector>

#include "pmscan/captures/import_command.h"
#include "pmscan/command_line/failure.h"
#include "pmscan/command_line/file_name.h"
#include "pmscan/devices/captured_connection.h"
#include "pmscan/report/error_codes.h"
#include "simulator/catalog/scanner_files.h"

namespace pmscan {
namespace {

struct NamedFile {
  std::string by;    // as the user calls what names it
  std::string file;  // empty: none
};

std::vector<NamedFile> FilesRead(const CommandWords& words) {
  return {{"FILE", words.readCapture},
          {"TRACE", words.trace},
          {"--device", DeviceFile(words.device)},
          {"--faults", words.faults},
          {"--original", words.original},
          {"--gamma-table", words.gammaFile},
          {"--color-matrix", words.matrixFile},
          {"--dll", words.modulePath}};
}

// But for the pictures of a scan, and the capture.
std::string OutputOf(const CommandWords& words) {
  if (words.command == Command::kImport) return ImportedFile(words);
  return words.command == Command::kReplay ? words.replayedPicture : words.convertedFile;
}

bool IsOutput(const CommandWords& words, const std::string& file) {
  if (words.command == Command::kScan) {
    return words.hasOutput && !words.isDryRun && words.names.Include(file);
  }
  const std::string output = OutputOf(words);
  return !output.empty() && IsSameFile(output, file);
}

bool TakesFile(const std::string& optionName) {
  return std::any_of(kOptions.begin(), kOptions.end(), [&](const OptionRow& row) {
    return row.value == "FILE" && LongName(row).substr(2) == optionName;
  });
}

[[noreturn]] void RefuseShared(const std::string& one, const NamedFile& other) {
  throw Failure(kUnsupported, one + " and " + other.by + " name the same file, " + other.file +
                                  ": what is written needs a file of its own.");
}

}  // namespace

std::string DeviceFile(const std::string& device) {
  if (IsCaptureName(device)) return device.substr(device.find(':') + 1);
  if (!IsSimulatorName(device)) return {};
  const std::string name = SimulatorName(device);
  return simulator::IsScannerFileName(name) ? name : "";
}

std::string FileNamedBy(const KeptOption& option) {
  if (option.name == "device") return DeviceFile(option.value);
  return TakesFile(option.name) ? option.value : "";
}

KeptOption ForAnyFolder(const KeptOption& option) {
  const std::string file = FileNamedBy(option);
  if (file.empty()) return option;
  const std::filesystem::path path = PathOf(file);
  std::error_code ignored;
  const bool isSimulator = option.name == "device" && IsSimulatorName(option.value);
  if (isSimulator && !std::filesystem::exists(path, ignored)) return option;
  const std::string before = option.value.substr(0, option.value.size() - file.size());
  return {option.name, before + Utf8(std::filesystem::absolute(path).lexically_normal())};
}

Failure WithProfile(const Failure& failure, const Options& options) {
  const std::string detail = failure.what();
  const bool isOfProfile =
      std::any_of(options.profileNames.begin(), options.profileNames.end(),
                  [&](const std::string& name) { return detail.starts_with(name); });
  if (!isOfProfile) return Failure(failure);
  return Failure(failure.code, options.profileFile + ": " + detail);
}

void RequireOwnFiles(const CommandWords& words) {
  const std::string& capture = words.captureFile;
  const std::string output = words.batch.empty() ? "-o" : "--batch";
  for (const NamedFile& read : FilesRead(words)) {
    if (read.file.empty()) continue;
    if (IsOutput(words, read.file)) RefuseShared(output, read);
    if (!capture.empty() && IsSameFile(capture, read.file)) RefuseShared("--capture", read);
  }
  if (!capture.empty() && IsOutput(words, capture)) RefuseShared(output, {"--capture", capture});
}

}  // namespace pmscan
