#include <doctest/doctest.h>

#include <filesystem>
#include <fstream>
#include <sstream>

#include "pmscan/captures/file_commands.h"
#include "pmscan/captures/import_command.h"
#include "tests/pmscan/refusal.h"
#include "tests/pmscan/test_folder.h"

namespace {

using pmscan::Options;

struct CaptureFolder : pmscan::tests::TestFolder {
  CaptureFolder() : TestFolder("pmscan_file_commands") {}

  Options Write(const std::string& text) const {
    TestFolder::Write("some.capture", text);
    Options options;
    options.readCapture = Name("some.capture");
    options.convertedFile = Name("some.pcapng");
    return options;
  }
};

constexpr const char* kReset =
    "pmddb832 capture 1\ncall PMReset\n  write 2 : 1B 40\n  read 1 : 15\n"
    "return PMReset result=0\n";

std::uint32_t CodeOf(void (*command)(const Options&, std::ostream&), const Options& options) {
  std::ostringstream out;
  return pmscan::tests::CodeOf([&] { command(options, out); });
}

std::string RefusalOf(void (*command)(const Options&, std::ostream&), const Options& options) {
  std::ostringstream out;
  return pmscan::tests::RefusalOf([&] { command(options, out); });
}

TEST_CASE("decode tells a capture's file, and in which line the trouble is") {
  const CaptureFolder folder;
  std::ostringstream out;
  pmscan::RunDecodeCommand(folder.Write(kReset), out);
  CHECK(out.str().find("!!   ESC @ reset               NAK  [line 4]\n") != std::string::npos);
}

TEST_CASE("decode --json gives an object for each told line") {
  const CaptureFolder folder;
  std::ostringstream out;
  Options options = folder.Write(kReset);
  options.isJson = true;
  pmscan::RunDecodeCommand(options, out);
  CHECK(
      out.str() ==
      R"json({"kind":"summary","told":"1 call of the host; trouble in 1, marked with !!","trouble":false}
{"kind":"call","told":"PMReset","seconds":0.0,"trouble":true}
{"kind":"exchange","told":"ESC @ reset","parts":["NAK"],"trouble":true,"line":4}
{"kind":"return","told":"not acknowledged (0)","trouble":true}
)json");
}

TEST_CASE("decode --json of what is no capture gives the failure, on one line") {
  const CaptureFolder folder;
  std::ostringstream out;
  Options options = folder.Write("hello\n");
  options.isJson = true;
  const auto decode = [&] { pmscan::RunDecodeCommand(options, out); };
  options.readCapture = "/no/such.capture";
  CHECK(pmscan::tests::CodeOf(decode) == pmscan::kCaptureUnreadable);
  CHECK(out.str() ==
        R"({"error":{"code":67,"meaning":"the capture cannot be read",)"
        R"("detail":"/no/such.capture does not open for reading.",)"
        R"("whatToDo":"Name a file that --capture wrote; docs/capture-format.md tells how to edit )"
        "one.\"},\"exitCode\":67}\n");
  options.readCapture = folder.Name("some.capture");
  CHECK(pmscan::tests::CodeOf(decode) == pmscan::kCaptureUnreadable);
  CHECK(out.str().ends_with("\"exitCode\":67}\n"));
  options.isJson = false;
  out.str("");
  CHECK(pmscan::tests::CodeOf(decode) == pmscan::kCaptureUnreadable);
  CHECK(out.str().empty());
}

TEST_CASE("decode --json tells the fields of a long reply, and a call that never returned") {
  const CaptureFolder folder;
  std::ostringstream out;
  Options options = folder.Write(
      "pmddb832 capture 1\nhost resolution = 300\ncall PMOpenScanner @1.5\nwrite 2 : 1C 46\n"
      "read 16 : 02 CA 00 00 00 00 00 00 00 00 00 00 00 00 00 00\n");
  options.isJson = true;
  pmscan::RunDecodeCommand(options, out);
  const auto has = [&](const char* line) { return out.str().find(line) != std::string::npos; };
  CHECK(has(R"({"kind":"call","told":"PMOpenScanner","seconds":1.5,"trouble":true})"));
  CHECK(has(R"({"kind":"settings by the host","told":"resolution 300","trouble":false})"));
  CHECK(has(
      R"json({"kind":"field","told":"main status","value":"warming up (0x02)","trouble":true})json"));
  CHECK(has(R"("told":"the capture ends here, before the call returned","trouble":true})"));
}

TEST_CASE("decode tells a capture without calls as one story") {
  const CaptureFolder folder;
  std::ostringstream out;
  pmscan::RunDecodeCommand(folder.Write("pmddb832 capture 1\nwrite 2 : 1B 40\nread 1 : 06\n"), out);
  CHECK(out.str() ==
        "   no call of the host, nothing went wrong\n\n   0.000 s  outside the host's calls\n"
        "     ESC @ reset               ACK\n");
}

TEST_CASE("decode refuses what is no capture") {
  const CaptureFolder folder;
  CHECK(CodeOf(pmscan::RunDecodeCommand, folder.Write("hello\n")) == pmscan::kCaptureUnreadable);
}

TEST_CASE("convert writes a pcapng file and says how much is in it") {
  const CaptureFolder folder;
  std::ostringstream out;
  const Options options = folder.Write(kReset);
  pmscan::RunConvertCommand(options, out);
  CHECK(out.str() == options.convertedFile + ": 2 transfers\n");
  std::ifstream file(options.convertedFile, std::ios::binary);
  CHECK(file.get() == 0x0A);
}

TEST_CASE("convert replaces a file only when it may") {
  const CaptureFolder folder;
  Options options = folder.Write(kReset);
  std::ofstream(options.convertedFile) << "mine";
  CHECK(CodeOf(pmscan::RunConvertCommand, options) == pmscan::kFileUnwritable);
  CHECK(std::filesystem::file_size(options.convertedFile) == 4);
  options.mayOverwrite = true;
  CHECK(CodeOf(pmscan::RunConvertCommand, options) == 0);
}

TEST_CASE("what is made of a capture is refused a folder that is not there") {
  const CaptureFolder folder;
  Options options = folder.Write(kReset);
  options.convertedFile = folder.Name("no/such/folder.pcapng");
  const std::string refusal =
      "74 " + options.convertedFile + ": cannot create the file: No such file or directory.";
  CHECK(RefusalOf(pmscan::RunConvertCommand, options) == refusal);
  CHECK(RefusalOf(pmscan::RunReportCommand, options) == refusal);
}

#ifndef _WIN32
TEST_CASE("what is made of a capture and has no room is removed, and the reason told") {
  const CaptureFolder folder;
  Options options = folder.Write(kReset);
  const std::string refusal = "74 " + options.convertedFile + ": cannot write: File too large.";
  options.trace = folder.Name("trace.pcapng");
  options.importedFile = options.convertedFile;
  std::ostringstream out;
  Options whole = options;
  whole.convertedFile = options.trace;
  pmscan::RunConvertCommand(whole, out);
  const pmscan::tests::NarrowDisk disk(16);
  for (const auto run :
       {&pmscan::RunConvertCommand, &pmscan::RunReportCommand, &pmscan::RunImportCommand}) {
    CHECK(RefusalOf(run, options) == refusal);
    CHECK_FALSE(std::filesystem::exists(options.convertedFile));
  }
}
#endif

TEST_CASE("report writes a page with the capture's name and says how much is in it") {
  const CaptureFolder folder;
  std::ostringstream out;
  Options options = folder.Write(kReset);
  options.convertedFile = folder.Name("some.html");
  pmscan::RunReportCommand(options, out);
  CHECK(out.str() == options.convertedFile + ": 2 transfers\n");
  const std::string page = folder.Text("some.html");
  CHECK(page.starts_with("<!DOCTYPE html>"));
  CHECK(page.ends_with("</html>\n"));
  CHECK(page.find("{\"file\":\"some.capture\"") != std::string::npos);
}

TEST_CASE("report replaces a page only when it may") {
  const CaptureFolder folder;
  Options options = folder.Write(kReset);
  std::ofstream(options.convertedFile) << "mine";
  CHECK(CodeOf(pmscan::RunReportCommand, options) == pmscan::kFileUnwritable);
  options.mayOverwrite = true;
  CHECK(CodeOf(pmscan::RunReportCommand, options) == 0);
}

TEST_CASE("report leaves the pictures out when it is told to") {
  const CaptureFolder folder;
  Options options = folder.Write(
      "pmddb832 capture 1\nwrite 2 : 1C 57\nread 1 : 06\nwrite 64 :\n"
      "+ 4B000000 4B000000 00000000 00000000 03000000 02000000 00080000 02000000\n+ 00\n* 31\n"
      "read 1 : 06\nwrite 2 : 1C 47\nread 14 : 02 00 06 00 00 00 01 00 00 00 00 00 00 00\n"
      "read 7 : 01 02 03 04 05 06 00\n");
  std::ostringstream out;
  options.mayOverwrite = true;
  pmscan::RunReportCommand(options, out);
  CHECK(folder.Text("some.pcapng").find("data:image/png") != std::string::npos);
  options.leavesOutPictures = true;
  pmscan::RunReportCommand(options, out);
  CHECK(folder.Text("some.pcapng").find("data:image/png") == std::string::npos);
}

TEST_CASE("what is no regular file is not replaced by what is made of a capture") {
  const CaptureFolder folder;
  Options options = folder.Write(kReset);
  options.mayOverwrite = true;
  std::filesystem::create_directories(options.convertedFile);
  std::ostringstream out;
  CHECK(pmscan::tests::RefusalOf([&] { pmscan::RunReportCommand(options, out); }) ==
        "74 " + options.convertedFile + " is a folder.");
}

}  // namespace
