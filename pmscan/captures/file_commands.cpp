#include "pmscan/captures/file_commands.h"

#include <ostream>
#include <string_view>
#include <variant>
#include <vector>

#include "capture/decode/decode.h"
#include "capture/file/number_text.h"
#include "capture/pcapng/pcapng_writer.h"
#include "pmscan/captures/capture_file.h"
#include "pmscan/captures/decode_json.h"
#include "pmscan/command_line/failure.h"
#include "pmscan/command_line/file_name.h"
#include "pmscan/encoders/byte_file.h"
#include "pmscan/report/error_codes.h"
#include "pmscan/report_page/report_page.h"

namespace pmscan {
namespace {

// The file that the command makes.
void WriteMade(const std::string& name, std::string_view contents) {
  WriteWhole(PathOf(name), name, contents, kFileUnwritable);
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
  const std::vector<std::uint8_t> packets = capture::ToPcapng(capture);
  WriteMade(options.convertedFile, {reinterpret_cast<const char*>(packets.data()), packets.size()});
  out << options.convertedFile << ": " << Summary(capture) << "\n";
}

void RunReportCommand(const Options& options, std::ostream& out) {
  const capture::Capture capture = ReadCaptureFile(options.readCapture);
  RequireFree(options.convertedFile, options.mayOverwrite);
  WriteMade(options.convertedFile,
            ReportPage(capture, FileNameOf(options.readCapture), !options.leavesOutPictures));
  out << options.convertedFile << ": " << Summary(capture) << "\n";
}

}  // namespace pmscan
