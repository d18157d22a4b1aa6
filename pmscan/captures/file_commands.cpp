#include "pmscan/captures/file_commands.h"

#include <algorithm>
#include <fstream>
#include <ostream>
#include <variant>
#include <vector>

#include "capture/decode/decode.h"
#include "capture/file/number_text.h"
#include "capture/pcapng/pcapng_writer.h"
#include "pmscan/captures/capture_file.h"
#include "pmscan/captures/decode_json.h"
#include "pmscan/command_line/failure.h"
#include "pmscan/command_line/file_name.h"
#include "pmscan/report/error_codes.h"
#include "pmscan/report_page/report_page.h"

namespace pmscan {
namespace {

void WriteFile(const std::string& name, const std::vector<std::uint8_t>& bytes) {
  const std::filesystem::path path = PathOf(name);
  std::ofstream stream(path, std::ios::binary | std::ios::trunc);
  if (!stream) throw Failure(kCaptureUnwritable, name + " does not open for writing.");
  stream.write(reinterpret_cast<const char*>(bytes.data()),
               static_cast<std::streamsize>(bytes.size()));
  stream.close();
  if (stream) return;
  std::error_code ignored;
  std::filesystem::remove(path, ignored);
  throw Failure(kCaptureUnwritable, name + " could not be written to its end.");
}

std::string Summary(const capture::Capture& capture) {
  std::size_t packets = 0;
  std::size_t withoutData = 0;
  for (const capture::Entry& entry : capture.entries) {
    const auto* const transfer = std::get_if<capture::Transfer>(&entry);
    if (transfer == nullptr) continue;
    ++packets;
    if (!transfer->bytes.has_value()) ++withoutData;
  }
  std::string text = capture::Counted(packets, "transfer");
  if (withoutData == 0) return text;
  return text + ", " + std::to_string(withoutData) +
         " of them image data of which the capture keeps only the length";
}

std::string FileNameOf(const std::string& name) {
  return Utf8(PathOf(name).filename());
}

}  // namespace

void RunDecodeCommand(const Options& options, std::ostream& out) try {
  const capture::Capture capture = ReadCaptureFile(options.readCapture);
  out << (options.isJson ? DecodeJson(capture) : capture::Decode(capture));
} catch (const Failure& failure) {
  if (options.isJson) out << DecodeFailureJson(failure);
  throw;
}

void RunConvertCommand(const Options& options, std::ostream& out) {
  const capture::Capture capture = ReadCaptureFile(options.readCapture);
  RequireFree(options.convertedFile, options.mayOverwrite);
  WriteFile(options.convertedFile, capture::ToPcapng(capture));
  out << options.convertedFile << ": " << Summary(capture) << "\n";
}

void RunReportCommand(const Options& options, std::ostream& out) {
  const capture::Capture capture = ReadCaptureFile(options.readCapture);
  RequireFree(options.convertedFile, options.mayOverwrite);
  const std::string page =
      ReportPage(capture, FileNameOf(options.readCapture), !options.leavesOutPictures);
  WriteFile(options.convertedFile, {page.begin(), page.end()});
  out << options.convertedFile << ": " << Summary(capture) << "\n";
}

}  // namespace pmscan
