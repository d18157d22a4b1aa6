#define WIN32_LEAN_AND_MEAN
#include <windows.h>
// windows.h comes first: the other headers build on it.
#include <fcntl.h>
#include <io.h>
#include <shellapi.h>

#include <array>
#include <atomic>
#include <cstdio>
#include <cstdlib>
#include <iostream>
#include <memory>

#include "pmscan/command_line/console.h"

namespace pmscan {
namespace {

constexpr UINT kInterruptedExit = 130;

std::atomic<bool> interrupted = false;
HANDLE interruption = nullptr;

BOOL WINAPI OnConsoleEvent(DWORD event) {
  if (event != CTRL_C_EVENT && event != CTRL_BREAK_EVENT) return FALSE;
  if (interrupted.exchange(true)) TerminateProcess(GetCurrentProcess(), kInterruptedExit);
  SetEvent(interruption);
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

std::string ToUtf8(const wchar_t* wide) {
  const int bytes = WideCharToMultiByte(CP_UTF8, 0, wide, -1, nullptr, 0, nullptr, nullptr);
  std::string utf8(static_cast<std::size_t>(bytes), '\0');
  WideCharToMultiByte(CP_UTF8, 0, wide, -1, utf8.data(), bytes, nullptr, nullptr);
  utf8.resize(utf8.size() - 1);  // the terminating zero
  return utf8;
}

std::wstring ToWide(const std::string& utf8) {
  const int bytes = static_cast<int>(utf8.size());
  const int length = MultiByteToWideChar(CP_UTF8, 0, utf8.data(), bytes, nullptr, 0);
  std::wstring wide(static_cast<std::size_t>(length), L'\0');
  MultiByteToWideChar(CP_UTF8, 0, utf8.data(), bytes, wide.data(), length);
  return wide;
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

// Past the buffer of standard output, which others could not use while nobody takes the bytes.
bool WriteStandardOutput(std::istream& stream) {
  std::cout << std::flush;
  std::fflush(stdout);
  const int output = _fileno(stdout);
  const int before = _setmode(output, _O_BINARY);
  std::array<char, 65536> bytes;
  int written = 0;
  int read = 0;
  do {
    stream.read(bytes.data(), bytes.size());
    read = static_cast<int>(stream.gcount());
    written = _write(output, bytes.data(), static_cast<unsigned>(read));
  } while (written == read && read > 0);
  _setmode(output, before);
  return written == read;
}

std::uint32_t ProcessNumber() {
  return GetCurrentProcessId();
}

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

// Each output operation of std::cerr flushes what std::cout has, and its own text at its end.
void JoinOutput() {
  constexpr std::size_t kBytes = 4096;
  std::setvbuf(stdout, nullptr, _IOFBF, kBytes);
  std::setvbuf(stderr, nullptr, _IOFBF, kBytes);
}

void CatchInterrupt() {
  interruption = CreateEventW(nullptr, TRUE, FALSE, nullptr);
  SetConsoleCtrlHandler(&OnConsoleEvent, TRUE);
}

bool IsInterrupted() {
  return interrupted;
}

void PauseUnlessInterrupted(std::chrono::milliseconds pause) {
  WaitForSingleObject(interruption, static_cast<DWORD>(pause.count()));
}

void EndProgram(int exitCode) {
  std::cout << std::flush;
  std::cerr << std::flush;
  std::fflush(stdout);
  std::fflush(stderr);
  TerminateProcess(GetCurrentProcess(), static_cast<UINT>(exitCode));
  std::abort();
}

}  // namespace pmscan
