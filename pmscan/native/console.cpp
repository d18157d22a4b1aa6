#include "pmscan/command_line/console.h"

#include <fcntl.h>
#include <poll.h>
#include <sys/ioctl.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <fstream>
#include <system_error>

#include "pmscan/command_line/interruption.h"

namespace pmscan {
namespace {

using Clock = std::chrono::steady_clock;

constexpr int kInterruptedExit = 130;

Interruption interruptions;

// A pipe that something can be read from behind the first Ctrl+C.
std::array<int, 2> interruption{-1, -1};

std::int64_t MillisecondsNow() {
  constexpr std::int64_t kPerSecond = 1000;
  constexpr std::int64_t kNanoseconds = 1000000;  // in one
  timespec now{};
  clock_gettime(CLOCK_MONOTONIC, &now);
  return now.tv_sec * kPerSecond + now.tv_nsec / kNanoseconds;
}

// Calls nothing but what a signal handler may.
extern "C" void OnInterrupt(int /*signal*/) {
  const int before = errno;
  const Interrupt interrupt = interruptions.Count(MillisecondsNow());
  if (interrupt == Interrupt::kSecond) _exit(kInterruptedExit);
  if (interrupt == Interrupt::kSameAgain) return;
  const char sign = 0;
  // A pipe that is full, which it is not, would do as well.
  [[maybe_unused]] const ssize_t written = write(interruption[1], &sign, 1);
  errno = before;
}

// Empty when the variable is not set.
std::filesystem::path FolderNamedBy(const char* variable) {
  const char* const folder = std::getenv(variable);
  return folder == nullptr ? "" : folder;
}

}  // namespace

std::vector<std::string> CommandLineArguments() {
  std::ifstream words("/proc/self/cmdline", std::ios::binary);
  std::vector<std::string> arguments;
  std::string word;
  std::getline(words, word, '\0');
  while (std::getline(words, word, '\0')) arguments.push_back(word);
  return arguments;
}

std::filesystem::path ProgramFolder() {
  return std::filesystem::read_symlink("/proc/self/exe").parent_path();
}

// A folder of settings that is relative counts for nothing.
std::filesystem::path ProfileFolder() {
  const std::filesystem::path settings = FolderNamedBy("XDG_CONFIG_HOME");
  if (settings.is_absolute()) return settings / "pmscan";
  return FolderNamedBy("HOME") / ".config" / "pmscan";
}

bool IsErrorOutputTerminal() {
  return isatty(STDERR_FILENO) != 0;
}

std::size_t ErrorOutputColumns() {
  constexpr std::size_t kUsual = 80;
  winsize size{};
  if (ioctl(STDERR_FILENO, TIOCGWINSZ, &size) != 0 || size.ws_col == 0) return kUsual;
  return size.ws_col;
}

bool WriteToOutput(std::span<const char> bytes) {
  while (!bytes.empty()) {
    const ssize_t written = write(STDOUT_FILENO, bytes.data(), bytes.size());
    if (written < 0 && errno == EINTR) continue;
    if (written <= 0) return false;
    bytes = bytes.subspan(static_cast<std::size_t>(written));
  }
  return true;
}

void OutliveReaders() {
  struct sigaction action {};
  action.sa_handler = SIG_IGN;
  sigaction(SIGPIPE, &action, nullptr);
}

std::string SystemWords(std::uint32_t error) {
  return std::generic_category().message(static_cast<int>(error)) + " (error " +
         std::to_string(error) + ")";
}

void CatchInterrupt() {
  if (pipe2(interruption.data(), O_CLOEXEC | O_NONBLOCK) != 0) {
    throw std::system_error(errno, std::generic_category(), "pipe");
  }
  struct sigaction action {};
  action.sa_handler = &OnInterrupt;
  action.sa_flags = SA_RESTART;
  sigaction(SIGINT, &action, nullptr);
}

bool IsInterrupted() {
  return interruptions.HasCome();
}

// What else stops a wait does not end the pause.
void PauseUnlessInterrupted(std::chrono::milliseconds pause) {
  const Clock::time_point end = Clock::now() + pause;
  pollfd waited{interruption[0], POLLIN, 0};
  for (auto left = pause; left.count() > 0 && !IsInterrupted();) {
    poll(&waited, 1, static_cast<int>(left.count()));
    left = std::chrono::ceil<std::chrono::milliseconds>(end - Clock::now());
  }
}

void EndProgram(int exitCode) {
  FlushOutput();
  _exit(exitCode);
}

}  // namespace pmscan
