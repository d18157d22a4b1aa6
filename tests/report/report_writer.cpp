#include <filesystem>
#include <fstream>
#include <iostream>
#include <string>

#include "pmscan/captures/capture_file.h"
#include "pmscan/report_page/report_page.h"
#include "tests/capture/sample_conversation.h"
#include "tests/report/long_conversation.h"

// Writes the reports that the test in the browser opens:
//
//   report_writer CAPTURES FOLDER
//
// one for each capture in the folder CAPTURES, and some on conversations that are made here.
namespace {

using pmddb832::tests::SampleConversation;
namespace fs = std::filesystem;

void Write(const fs::path& folder, const std::string& name, const capture::Capture& capture,
           bool showsPictures = true) {
  std::ofstream(folder / (name + ".html"), std::ios::binary)
      << pmscan::ReportPage(capture, name, showsPictures);
}

// What a device might send to break out of the page.
SampleConversation HostileConversation() {
  const std::string name = "</script><script>document.title='broken out'</script><!--";
  SampleConversation sample;
  sample.Call(name, {{name, 1}}).HostSets(8, {'<', '/', 'h', '1', '>', 0, 0, 0});
  sample.Write({0x1B, '@'}).Read({0x15});
  return sample.Return({{name, 1}});
}

capture::Capture WithoutCallsAndTimes(const capture::Capture& whole) {
  capture::Capture transfers;
  for (const capture::Entry& entry : whole.entries) {
    if (const auto* const transfer = std::get_if<capture::Transfer>(&entry)) {
      transfers.entries.emplace_back(*transfer);
      std::get<capture::Transfer>(transfers.entries.back()).microseconds = 0;
    }
  }
  return transfers;
}

}  // namespace

int main(int count, char** arguments) {
  if (count != 3) {
    std::cerr << "report_writer: expected the folder of the captures and that of the reports\n";
    return 64;
  }
  const fs::path folder = arguments[2];
  fs::create_directories(folder);
  for (const fs::directory_entry& file : fs::directory_iterator(arguments[1])) {
    const std::string name = file.path().stem().string();
    Write(folder, name, pmscan::ReadCaptureFile(file.path().string()));
  }
  const capture::Capture grey =
      pmscan::ReadCaptureFile((fs::path(arguments[1]) / "extended-grey.txt").string());
  Write(folder, "no-pictures", grey, false);
  Write(folder, "transfers-only", WithoutCallsAndTimes(grey));
  Write(folder, "hostile", HostileConversation().capture);
  Write(folder, "empty", {});
  Write(folder, "long", pmscan::tests::LongConversation(100'000));
  return 0;
}
