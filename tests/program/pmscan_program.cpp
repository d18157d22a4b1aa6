#include "tests/program/pmscan_program.h"

#define WIN32_LEAN_AND_MEAN
#include <windows.h>

#include <algorithm>
#include <fstream>
#include <iterator>
#include <stdexcept>

namespace pmscan::tests {
namespace {

constexpr DWORD kLongestRun = 120000;  // milliseconds

std::string ReadAll(const std::filesystem::path& path) {
  std::ifstream stream(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(stream), {}};
}

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
  Process(const std::filesystem::path& program, const std::filesystem::path& folder,
          const std::string& arguments, const OutputFile& output, const OutputFile& errors) {
    std::wstring line =
        L"\"" + program.wstring() + L"\" " + std::wstring(arguments.begin(), arguments.end());
    STARTUPINFOW startup{};
    startup.cb = sizeof(startup);
    startup.dwFlags = STARTF_USESTDHANDLES;
    startup.hStdOutput = output.handle;
    startup.hStdError = errors.handle;
    if (CreateProcessW(nullptr, line.data(), nullptr, nullptr, TRUE, 0, nullptr, folder.c_str(),
                       &startup, &information_) == 0) {
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

std::filesystem::path OwnFolder() {
  std::wstring name(MAX_PATH, L'\0');
  name.resize(GetModuleFileNameW(nullptr, name.data(), MAX_PATH));
  return std::filesystem::path(name).parent_path();
}

std::uint32_t NumberAt(const std::string& file, std::size_t offset, std::size_t bytes) {
  std::uint32_t number = 0;
  for (std::size_t i = bytes; i-- > 0;) {
    number = number << 8 | static_cast<unsigned char>(file.at(offset + i));
  }
  return number;
}

}  // namespace

ProgramUnderTest::ProgramUnderTest(const std::filesystem::path& programPath)
    : program_(OwnFolder() / programPath),
      folder_(std::filesystem::current_path() /
              ("pmscan_program_" + std::to_string(GetCurrentProcessId()))) {
  std::filesystem::remove_all(folder_);
  std::filesystem::create_directory(folder_);
}

ProgramUnderTest::~ProgramUnderTest() {
  std::error_code ignored;
  std::filesystem::remove_all(folder_, ignored);
}

ProgramResult ProgramUnderTest::Run(const std::string& arguments) const {
  ProgramResult result;
  {
    const OutputFile output(Output());
    const OutputFile errors(Errors());
    result.exitCode = Process(program_, folder_, arguments, output, errors).ExitCode();
  }
  result.output = ReadAll(Output());
  result.errors = ReadAll(Errors());
  return result;
}

std::string ProgramUnderTest::Contents(const std::string& file) const {
  return ReadAll(folder_ / file);
}

void ProgramUnderTest::Write(const std::string& file, const std::string& contents) const {
  std::ofstream(folder_ / file, std::ios::binary) << contents;
}

std::vector<std::string> ProgramUnderTest::Files() const {
  std::vector<std::string> names;
  for (const auto& entry : std::filesystem::directory_iterator(folder_)) {
    if (entry.path() == Output() || entry.path() == Errors()) continue;
    names.push_back(entry.path().filename().string());
  }
  std::sort(names.begin(), names.end());
  return names;
}

std::vector<std::uint32_t> TiffHeights(const std::string& file) {
  constexpr std::uint32_t kImageLength = 257;
  std::vector<std::uint32_t> heights;
  std::uint32_t directory = NumberAt(file, 4, 4);
  while (directory != 0) {
    const std::uint32_t entries = NumberAt(file, directory, 2);
    for (std::uint32_t i = 0; i < entries; ++i) {
      const std::size_t entry = directory + 2 + std::size_t{i} * 12;
      if (NumberAt(file, entry, 2) != kImageLength) continue;
      heights.push_back(NumberAt(file, entry + 8, NumberAt(file, entry + 2, 2) == 3 ? 2 : 4));
    }
    directory = NumberAt(file, directory + 2 + std::size_t{entries} * 12, 4);
  }
  return heights;
}

}  // namespace pmscan::tests
