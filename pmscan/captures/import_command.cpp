#include "pmscan/captures/import_command.h"

#include <fstream>
#include <iterator>
#include <optional>
#include <ostream>
#include <sstream>
#include <vector>

#include "capture/file/capture_writer.h"
#include "capture/file/number_text.h"
#include "capture/trace/trace_import.h"
#include "capture/trace/trace_packets.h"
#include "pmscan/captures/capture_file.h"
#include "pmscan/command_line/failure.h"
#include "pmscan/command_line/file_name.h"
#include "pmscan/encoders/byte_file.h"
#include "pmscan/report/error_codes.h"

namespace pmscan {
namespace {

using capture::ImportedTrace;

std::vector<std::uint8_t> ReadTrace(const std::string& name) {
  std::ifstream stream(PathOf(name), std::ios::binary);
  if (!stream) throw Failure(kTraceUnreadable, name + " does not open for reading.");
  return {std::istreambuf_iterator<char>(stream), {}};
}

std::optional<std::uint32_t> Chosen(std::uint32_t number) {
  if (number == kAnyOnBus) return std::nullopt;
  return number;
}

ImportedTrace Import(const Options& options) {
  const std::vector<std::uint8_t> file = ReadTrace(options.trace);
  try {
    return capture::ImportTrace(file, {Chosen(options.traceBus), Chosen(options.traceDevice)});
  } catch (const capture::TraceError& error) {
    throw Failure(kTraceUnreadable, options.trace + ": " + error.what());
  }
}

std::string Remarks(const Options& options, const ImportedTrace& imported) {
  std::string text = "pmscan import " + options.trace;
  for (const std::string& note : imported.notes) text += "\n" + note;
  return text;
}

std::string TextOf(const Options& options, const ImportedTrace& imported) {
  std::ostringstream text;
  capture::CaptureWriter writer(text, Remarks(options, imported));
  for (const capture::Entry& entry : imported.capture.entries) writer.Add(entry);
  return text.str();
}

}  // namespace

std::string ImportedFile(const Options& options) {
  if (!options.importedFile.empty()) return options.importedFile;
  return Utf8(PathOf(options.trace).replace_extension(".capture"));
}

void RunImportCommand(const Options& options, std::ostream& out) {
  const ImportedTrace imported = Import(options);
  const std::string name = ImportedFile(options);
  RequireFree(name, options.mayOverwrite);
  WriteWhole(PathOf(name), name, TextOf(options, imported), kFileUnwritable);
  out << name << ": " << capture::Counted(imported.capture.entries.size(), "transfer")
      << " of device " << imported.scanner.device << " on bus " << imported.scanner.bus << "\n";
  for (const std::string& note : imported.notes) out << "Note: " << note << "\n";
}

}  // namespace pmscan
