#include <doctest/doctest.h>

#include "pmscan/captures/capture_file.h"
#include "pmscan/captures/capture_session.h"
#include "tests/pmscan/refusal.h"
#include "tests/pmscan/test_folder.h"
#include "transport/raw_device.h"

namespace {

using pmscan::Failure;

class SilentDevice final : public pmddb832::RawDevice {
 public:
  std::int32_t RawReadData(void*, std::uint32_t* byteCount, void*) override {
    *byteCount = 0;
    return -1;
  }
  std::int32_t RawWriteData(void*, std::uint32_t, void*) override { return 0; }
};

struct CaptureFolder : pmscan::tests::TestFolder {
  CaptureFolder() : TestFolder("pmscan_capture_session") { Write("empty.capture", "hello\n"); }
};

// The file that a module looks into while it is called.
std::string fileUnderTest;

std::uint32_t CodeOf(const std::string& file, bool mayOverwrite) {
  return pmscan::tests::CodeOf([&] {
    const pmscan::CaptureSession session({file, false}, mayOverwrite, "");
  });
}

TEST_CASE("capture session: what happens is in the file at once") {
  const CaptureFolder folder;
  fileUnderTest = folder.Name("new.capture");
  pmddb832::ScannerSettings settings{};
  SilentDevice device;
  settings.deviceInterface = &device;
  pmscan::CaptureSession session({fileUnderTest, false}, false, "a remark");
  session.Attach(settings);
  pmscan::ModuleExports module;
  module.reset = []() -> std::uint32_t {
    return pmscan::ReadCaptureFile(fileUnderTest).entries.size() == 1 ? 1 : 0;
  };
  CHECK(session.Attach(module).reset() == 1);
  CHECK(pmscan::ReadCaptureFile(fileUnderTest).entries.size() == 2);
  CHECK_NOTHROW(session.Finish());
}

TEST_CASE("capture session: a file is not replaced unless it may be") {
  const CaptureFolder folder;
  const std::string file = folder.Name("new.capture");
  CHECK(CodeOf(file, false) == 0);
  CHECK(CodeOf(file, false) == pmscan::kFileUnwritable);
  CHECK(CodeOf(file, true) == 0);
}

TEST_CASE("capture session: a file that cannot be opened is a failure of its own") {
  const auto open = [] {
    const pmscan::CaptureSession session({"/no/such/folder/x.capture", false}, false, "");
  };
  CHECK(pmscan::tests::RefusalOf(open) ==
        "74 /no/such/folder/x.capture: cannot create the file: No such file or directory.");
}

#ifndef _WIN32
TEST_CASE("capture session: a file that does not take something is told with the reason") {
  pmddb832::ScannerSettings settings{};
  SilentDevice device;
  settings.deviceInterface = &device;
  pmscan::CaptureSession session({"/dev/full", false}, true, "");
  session.Attach(settings);
  std::uint8_t byte = 6;
  settings.deviceInterface->RawWriteData(&byte, 1, nullptr);
  CHECK(pmscan::tests::RefusalOf([&] { session.Finish(); }) ==
        "74 /dev/full: cannot write: No space left on device.");
}
#endif

TEST_CASE("capture file: one that is not there, or is no capture, is told apart from others") {
  CHECK_THROWS_WITH_AS(pmscan::ReadCaptureFile("/no/such.capture"),
                       "/no/such.capture does not open for reading.", Failure);
  const CaptureFolder folder;
  CHECK_THROWS_AS(pmscan::ReadCaptureFile(folder.Name("empty.capture")), Failure);
}

}  // namespace
