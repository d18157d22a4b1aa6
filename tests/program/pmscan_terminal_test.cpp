#include <doctest/doctest.h>
#include <fcntl.h>
#include <poll.h>
#include <sys/ioctl.h>
#include <sys/stat.h>
#include <termios.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <chrono>
#include <future>
#include <sstream>

#include "tests/program/pmscan_program.h"

namespace {

using pmscan::tests::OwnFolder;
using pmscan::tests::PmscanPath;
using pmscan::tests::ProgramUnderTest;
using Clock = std::chrono::steady_clock;

// A terminal that shows the bytes as they were written.
class Terminal {
 public:
  explicit Terminal(unsigned short columns) : master_(posix_openpt(O_RDWR | O_NOCTTY | O_CLOEXEC)) {
    grantpt(master_);
    unlockpt(master_);
    line_ = open(Name(), O_RDWR | O_NOCTTY | O_CLOEXEC);
    REQUIRE(line_ >= 0);
    termios manners{};
    tcgetattr(line_, &manners);
    cfmakeraw(&manners);
    tcsetattr(line_, TCSANOW, &manners);
    const winsize size{24, columns, 0, 0};
    ioctl(line_, TIOCSWINSZ, &size);
  }
  ~Terminal() { close(master_); }
  Terminal(const Terminal&) = delete;
  Terminal& operator=(const Terminal&) = delete;

  const char* Name() const { return ptsname(master_); }

  // Nothing more is written by this process.
  void HangUp() const { close(line_); }

  // Waits for what is written next. Empty behind the end, and when nothing comes for a minute.
  std::string Read() const {
    constexpr int kPatience = 60000;  // milliseconds
    pollfd waited{master_, POLLIN, 0};
    if (poll(&waited, 1, kPatience) <= 0) return {};
    std::array<char, 4096> bytes{};
    const ssize_t count = read(master_, bytes.data(), bytes.size());
    return {bytes.data(), static_cast<std::size_t>(std::max<ssize_t>(count, 0))};
  }

 private:
  int master_;
  int line_ = -1;
};

// A fault script that whoever reads it has to wait for.
class HeldBackFaults {
 public:
  explicit HeldBackFaults(std::filesystem::path path) : path_(std::move(path)) {
    REQUIRE(mkfifo(path_.c_str(), 0600) == 0);
  }
  // Whoever waits now waits no longer.
  ~HeldBackFaults() { close(open(path_.c_str(), O_WRONLY | O_NONBLOCK)); }
  HeldBackFaults(const HeldBackFaults&) = delete;
  HeldBackFaults& operator=(const HeldBackFaults&) = delete;

  void Deliver() const {
    constexpr std::string_view kNone = R"({"faults": []})";
    const int file = open(path_.c_str(), O_WRONLY);
    CHECK(write(file, kNone.data(), kNone.size()) == static_cast<ssize_t>(kNone.size()));
    close(file);
  }

 private:
  const std::filesystem::path path_;
};

// The texts of the line that is written over.
std::vector<std::string> Shown(const std::string& bytes) {
  std::istringstream stream(bytes.substr(0, bytes.find('\n')));
  std::vector<std::string> texts;
  for (std::string text; std::getline(stream, text, '\r');) texts.push_back(text);
  return texts;
}

// What is shown whatever the time: before the scan, at its beginning and at its end.
constexpr std::size_t kAnyway = 10;

struct Watched {
  unsigned long exitCode = 0;
  std::string before;     // what was shown before the scan could begin
  bool wasThere = false;  // the picture, at that time
  std::vector<std::string> texts;
  Clock::duration time{};
};

Watched WatchScan(const ProgramUnderTest& program, unsigned short columns) {
  const Terminal terminal(columns);
  const std::string file = std::to_string(columns) + ".png";
  const std::string arguments =
      "scan --resolution 600 --original bed.png --faults " + file + ".json -o " + file;
  Watched watched;
  const Clock::time_point start = Clock::now();
  std::future<unsigned long> ended;
  const HeldBackFaults faults(program.Folder() / (file + ".json"));
  ended = std::async(std::launch::async, [&] {
    const std::filesystem::path& folder = program.Folder();
    const unsigned long code = pmscan::tests::RunProcess(
        {OwnFolder() / PmscanPath(), arguments, folder, folder / "output.txt", terminal.Name()});
    terminal.HangUp();
    return code;
  });
  watched.before = terminal.Read();
  REQUIRE(!watched.before.empty());
  watched.wasThere = std::filesystem::exists(program.Folder() / file);
  faults.Deliver();
  std::string bytes = watched.before;
  for (std::string more; !(more = terminal.Read()).empty();) bytes += more;
  watched.exitCode = ended.get();
  watched.time = Clock::now() - start;
  watched.texts = Shown(bytes);
  return watched;
}

bool IsBarAtBegin(const std::string& text) {
  return text.starts_with("Page 1") && text.find(" 0 %") != std::string::npos;
}

constexpr std::array<unsigned short, 3> kColumns{80, 40, 20};

TEST_CASE_FIXTURE(ProgramUnderTest,
                  "pmscan: a terminal shows the scan from the first moment on, in one line") {
  // Coarse, so that it is quickly there.
  REQUIRE(Run("scan --resolution 50 -o bed.png").exitCode == 0);
  for (const unsigned short columns : kColumns) {
    CAPTURE(columns);
    const Watched watched = WatchScan(*this, columns);
    CHECK(watched.exitCode == 0);
    CHECK(watched.before.starts_with("\rPreparing the scan"));
    CHECK(!watched.wasThere);
    for (const std::string& text : watched.texts) {
      CAPTURE(text);
      CHECK(text.size() < columns);
    }
    CHECK(std::any_of(watched.texts.begin(), watched.texts.end() - 1, IsBarAtBegin));
    CHECK(watched.texts.back().find("100 %") != std::string::npos);
    // The picture comes in more than 400 pieces.
    const auto mostBars = static_cast<std::size_t>(watched.time / std::chrono::milliseconds(100));
    CHECK(watched.texts.size() <= mostBars + kAnyway);
  }
}

}  // namespace
