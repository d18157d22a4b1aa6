#define WIN32_LEAN_AND_MEAN
#include <windows.h>

#include <cstdlib>
#include <stdexcept>

#include "pmscan/command_line/file_name.h"
#include "tests/program/process.h"

namespace pmscan::tests {

const char* const kLineEnd = "\r\n";
const char* const kNoLibraryWords = " (Windows error 126).\n";
const char* const kSettingsVariable = "APPDATA";
const char* const kTemporaryVariable = "TMP";

namespace {

constexpr DWORD kLongestRun = 120000;  // milliseconds

// A file that a program writes its output to.
class OutputFile {
 public:
  explicit OutputFile(const std::filesystem::path& path) {
    SECURITY_ATTRIBUTES inherited{sizeof(inherited), nullptr, TRUE};
    handle = CreateFileW(path.c_str(), GENERIC_WRITE, FILE_SHARE_READ | FILE_SHARE_WRITE,
                         &inherited, CREATE_ALWAYS, 0, nullptr);
  }
  ~OutputFile() { CloseHandle(handle); }
  OutputFile(const OutputFile&) = delete;
  OutputFile& operator=(const OutputFile&) = delete;

  HANDLE handle;
};

// A running pmscan.exe.
class Process {
 public:
  Process(const ProcessToRun& process, const OutputFile& output, const OutputFile& errors) {
    std::wstring line =
        L"\"" + process.program.wstring() + L"\" " + PathOf(process.arguments).wstring();
    STARTUPINFOW startup{};
    startup.cb = sizeof(startup);
    startup.dwFlags = STARTF_USESTDHANDLES;
    startup.hStdOutput = output.handle;
    startup.hStdError = errors.handle;
    if (CreateProcessW(nullptr, line.data(), nullptr, nullptr, TRUE, 0, nullptr,
                       process.folder.c_str(), &startup, &information_) == 0) {
      throw std::runtime_error("pmscan.exe does not start: Windows error " +
                               std::to_string(GetLastError()));
    }
  }
  ~Process() {
    TerminateProcess(information_.hProcess, 255);
    CloseHandle(information_.hThread);
    CloseHandle(information_.hProcess);
  }
  Process(const Process&) = delete;
  Process& operator=(const Process&) = delete;

  unsigned long ExitCode() const {
    DWORD code = 0;
    if (WaitForSingleObject(information_.hProcess, kLongestRun) != WAIT_OBJECT_0) {
      throw std::runtime_error("pmscan.exe does not end.");
    }
    GetExitCodeProcess(information_.hProcess, &code);
    return code;
  }

 private:
  PROCESS_INFORMATION information_{};
};

}  // namespace

std::filesystem::path PmscanPath() {
  return "pmscan.exe";
}

std::filesystem::path OwnFolder() {
  std::wstring name(MAX_PATH, L'\0');
  name.resize(GetModuleFileNameW(nullptr, name.data(), MAX_PATH));
  return std::filesystem::path(name).parent_path();
}

std::uint32_t OwnNumber() {
  return GetCurrentProcessId();
}

void SetVariable(const std::string& name, const std::string& value) {
  _putenv_s(name.c_str(), value.c_str());
}

unsigned long RunProcess(const ProcessToRun& process) {
  const OutputFile output(process.output);
  const OutputFile errors(process.errors);
  return Process(process, output, errors).ExitCode();
}

}  // namespace pmscan::tests
