#define WIN32_LEAN_AND_MEAN
#include <windows.h>
// windows.h comes first: the other headers build on it.
#include <fcntl.h>
#include <io.h>
#include <shellapi.h>

#include <array>
#include <cstdio>
#include <cstdlib>
#include <memory>

#include "pmscan/command_line/console.h"
#include "pmscan/command_line/interruption.h"
#include "pmscan/windows/wide_text.h"

namespace pmscan {
namespace {

constexpr UINT kInterruptedExit = 130;

Interruption interruptions;
HANDLE interruption = nullptr;

BOOL WINAPI OnConsoleEvent(DWORD event) {
  if (event != CTRL_C_EVENT && event != CTRL_BREAK_EVENT) return FALSE;
  const Interrupt interrupt = interruptions.Count(static_cast<std::int64_t>(GetTickCount64()));
  if (interrupt == Interrupt::kSecond) TerminateProcess(GetCurrentProcess(), kInterruptedExit);
  if (interrupt == Interrupt::kFirst) SetEvent(interruption);
  return TRUE;
}

}  // namespace

std::vector<std::string> CommandLineArguments() {
  SetConsoleOutputCP(CP_UTF8);
  int count = 0;
  const std::unique_ptr<LPWSTR, decltype(&LocalFree)> words(
      CommandLineToArgvW(GetCommandLineW(), &count), &LocalFree);
  std::vector<std::string> arguments;
  for (int i = 1; i < count; ++i) arguments.push_back(ToUtf8(words.get()[i]));
  return arguments;
}

std::filesystem::path ProgramFolder() {
  constexpr DWORD kLongestPath = 32768;
  std::wstring program(kLongestPath, L'\0');
  program.resize(GetModuleFileNameW(nullptr, program.data(), kLongestPath));
  return std::filesystem::path(program).parent_path();
}

std::filesystem::path ProfileFolder() {
  const wchar_t* const folder = _wgetenv(L"APPDATA");
  return std::filesystem::path(folder == nullptr ? L"" : folder) / "pmscan";
}

bool IsErrorOutputTerminal() {
  return _isatty(_fileno(stderr)) != 0;
}

std::size_t ErrorOutputColumns() {
  constexpr std::size_t kUsual = 80;
  CONSOLE_SCREEN_BUFFER_INFO screen{};
  if (GetConsoleScreenBufferInfo(GetStdHandle(STD_ERROR_HANDLE), &screen) == 0) return kUsual;
  const int columns = screen.srWindow.Right - screen.srWindow.Left + 1;
  return columns > 0 ? static_cast<std::size_t>(columns) : kUsual;
}

bool WriteToOutput(std::span<const char> bytes) {
  const int output = _fileno(stdout);
  const int before = _setmode(output, _O_BINARY);
  const int written = _write(output, bytes.data(), static_cast<unsigned>(bytes.size()));
  _setmode(output, before);
  return written == static_cast<int>(bytes.size());
}

// Such a write does no more than fail here.
void OutliveReaders() {}

std::string SystemWords(std::uint32_t error) {
  constexpr std::uint32_t kMostPlain = 0xFFFF;  // greater ones are written with their bits
  constexpr DWORD kHow = FORMAT_MESSAGE_FROM_SYSTEM | FORMAT_MESSAGE_IGNORE_INSERTS;
  std::array<wchar_t, 512> text{};
  FormatMessageW(kHow, nullptr, error, 0, text.data(), static_cast<DWORD>(text.size()), nullptr);
  std::string words = ToUtf8(text.data());
  words.resize(words.find_last_not_of(" .\r\n") + 1);
  std::array<char, 40> number{};
  std::snprintf(number.data(), number.size(),
                error > kMostPlain ? "Windows error 0x%08lX" : "Windows error %lu",
                static_cast<unsigned long>(error));
  return words.empty() ? number.data() : words + " (" + number.data() + ")";
}

void CatchInterrupt() {
  interruption = CreateEventW(nullptr, TRUE, FALSE, nullptr);
  SetConsoleCtrlHandler(&OnConsoleEvent, TRUE);
}

bool IsInterrupted() {
  return interruptions.HasCome();
}

void PauseUnlessInterrupted(std::chrono::milliseconds pause) {
  WaitForSingleObject(interruption, static_cast<DWORD>(pause.count()));
}

void EndProgram(int exitCode) {
  FlushOutput();
  TerminateProcess(GetCurrentProcess(), static_cast<UINT>(exitCode));
  std::abort();
}

}  // namespace pmscan
