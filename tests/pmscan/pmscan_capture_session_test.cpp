#include <doctest/doctest.h>

#include <filesystem>
#include <fstream>

#include "pmscan/captures/capture_file.h"
#include "pmscan/captures/capture_session.h"
#include "pmscan/command_line/failure.h"
#include "pmscan/report/error_codes.h"
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

// A file name of the test's own, gone at its end.
class OwnFile {
 public:
  explicit OwnFile(const std::string& name) : path_(std::filesystem::temp_directory_path() / name) {
    std::filesystem::remove(path_);
  }
  ~OwnFile() { std::filesystem::remove(path_); }
  OwnFile(const OwnFile&) = delete;
  OwnFile& operator=(const OwnFile&) = delete;

  std::string Name() const { return path_.string(); }

 private:
  const std::filesystem::path path_;
};

// The file that a module looks into while it is called.
std::string fileUnderTest;

std::uint32_t CodeOf(const std::string& file, bool mayOverwrite) {
  try {
    pmscan::CaptureSession({file, false}, mayOverwrite, "");
  } catch (const Failure& failure) {
    return failure.code;
  }
  return 0;
}

TEST_CASE("capture session: what happens is in the file at once") {
  const OwnFile file("pmddb832-session.capture");
  pmddb832::ScannerSettings settings{};
  SilentDevice device;
  settings.deviceInterface = &device;
  pmscan::CaptureSession session({file.Name(), false}, false, "a remark");
  session.Attach(settings);
  pmscan::ModuleExports module;
  fileUnderTest = file.Name();
  module.reset = []() -> std::uint32_t {
    return pmscan::ReadCaptureFile(fileUnderTest).entries.size() == 1 ? 1 : 0;
  };
  CHECK(session.Attach(module).reset() == 1);
  CHECK(pmscan::ReadCaptureFile(file.Name()).entries.size() == 2);
  CHECK_NOTHROW(session.Finish());
}

TEST_CASE("capture session: a file is not replaced unless it may be") {
  const OwnFile file("pmddb832-replaced.capture");
  CHECK(CodeOf(file.Name(), false) == 0);
  CHECK(CodeOf(file.Name(), false) == pmscan::kCaptureUnwritable);
  CHECK(CodeOf(file.Name(), true) == 0);
}

TEST_CASE("capture session: a file that cannot be opened is a failure of its own") {
  CHECK(CodeOf("/no/such/folder/x.capture", false) == pmscan::kCaptureUnwritable);
}

TEST_CASE("capture file: one that is not there, or is no capture, is told apart from others") {
  CHECK_THROWS_WITH_AS(pmscan::ReadCaptureFile("/no/such.capture"),
                       "/no/such.capture does not open for reading.", Failure);
  const OwnFile file("pmddb832-empty.capture");
  std::ofstream(file.Name()) << "hello\n";
  CHECK_THROWS_AS(pmscan::ReadCaptureFile(file.Name()), Failure);
}

}  // namespace
