#include "pmscan/command_line/named_files.h"

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
