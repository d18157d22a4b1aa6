#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdlib>
#include <iterator>
#include <sstream>
#include <stdexcept>
#include <vector>

#include "tests/program/process.h"

namespace pmscan::tests {

const char* const kLineEnd = "\n";
const char* const kNoLibraryWords = ": No such file or directory.\n";
const char* const kSettingsVariable = "XDG_CONFIG_HOME";
const char* const kTemporaryVariable = "TMPDIR";

namespace {

// What a program has in place of the test's own files and folder.
class StartOrders {
 public:
  explicit StartOrders(const ProcessToRun& process) {
    constexpr int kHow = O_WRONLY | O_CREAT | O_TRUNC;
    constexpr mode_t kRights = 0644;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_addopen(&actions, STDOUT_FILENO, process.output.c_str(), kHow,
                                     kRights);
    posix_spawn_file_actions_addopen(&actions, STDERR_FILENO, process.errors.c_str(), kHow,
                                     kRights);
    posix_spawn_file_actions_addchdir_np(&actions, process.folder.c_str());
  }
  ~StartOrders() { posix_spawn_file_actions_destroy(&actions); }
  StartOrders(const StartOrders&) = delete;
  StartOrders& operator=(const StartOrders&) = delete;

  posix_spawn_file_actions_t actions{};
};

}  // namespace

// At the top of the build folder a folder has the program's name.
std::filesystem::path PmscanPath() {
  return "bin/pmscan";
}

std::filesystem::path OwnFolder() {
  return std::filesystem::read_symlink("/proc/self/exe").parent_path();
}

std::uint32_t OwnNumber() {
  return static_cast<std::uint32_t>(getpid());
}

void SetVariable(const std::string& name, const std::string& value) {
  setenv(name.c_str(), value.c_str(), 1);
}

// A program that does not end is ended by the time limit of the test.
unsigned long RunProcess(const ProcessToRun& process) {
  std::istringstream text(process.arguments);
  std::vector<std::string> words{process.program};
  words.insert(words.end(), std::istream_iterator<std::string>(text), {});
  std::vector<char*> arguments;
  for (std::string& word : words) arguments.push_back(word.data());
  arguments.push_back(nullptr);
  const StartOrders orders(process);
  pid_t child = 0;
  if (posix_spawn(&child, arguments[0], &orders.actions, nullptr, arguments.data(), environ) != 0) {
    throw std::runtime_error(process.program.string() + " does not start.");
  }
  int status = 0;
  waitpid(child, &status, 0);
  if (WIFEXITED(status)) return static_cast<unsigned long>(WEXITSTATUS(status));
  throw std::runtime_error("pmscan was ended by signal " + std::to_string(WTERMSIG(status)) + ".");
}

}  // namespace pmscan::tests
