#pragma once

#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>

#ifndef _WIN32
#include <sys/resource.h>

#include <csignal>
#endif

namespace pmscan::tests {

// A folder of the test's own, which does not exist at first and goes with this object.
class TestFolder {
 public:
  explicit TestFolder(const char* name) : path(std::filesystem::temp_directory_path() / name) {
    std::filesystem::remove_all(path);
  }
  ~TestFolder() { std::filesystem::remove_all(path); }
  TestFolder(const TestFolder&) = delete;
  TestFolder& operator=(const TestFolder&) = delete;

  std::string Name(const std::string& file) const { return (path / file).string(); }
  void Write(const std::string& file, const std::string& text) const {
    std::filesystem::create_directories((path / file).parent_path());
    std::ofstream(path / file, std::ios::binary) << text;
  }
  std::string Text(const std::string& file) const {
    std::ostringstream text;
    text << std::ifstream(path / file).rdbuf();
    return text.str();
  }

  const std::filesystem::path path;
};

// The folder, which is made, is the working folder as long as this lives.
class WorkingFolder {
 public:
  explicit WorkingFolder(const std::filesystem::path& folder)
      : before_(std::filesystem::current_path()) {
    std::filesystem::create_directories(folder);
    std::filesystem::current_path(folder);
  }
  ~WorkingFolder() { std::filesystem::current_path(before_); }
  WorkingFolder(const WorkingFolder&) = delete;
  WorkingFolder& operator=(const WorkingFolder&) = delete;

 private:
  const std::filesystem::path before_;
};

#ifndef _WIN32
// As long as this lives no file of this process grows beyond so many bytes: a write that would
// fails with "File too large".
class NarrowDisk {
 public:
  explicit NarrowDisk(rlim_t mostBytes) {
    getrlimit(RLIMIT_FSIZE, &before_);
    const rlimit narrow{mostBytes, before_.rlim_max};
    setrlimit(RLIMIT_FSIZE, &narrow);
  }
  ~NarrowDisk() {
    setrlimit(RLIMIT_FSIZE, &before_);
    std::signal(SIGXFSZ, handlerBefore_);
  }
  NarrowDisk(const NarrowDisk&) = delete;
  NarrowDisk& operator=(const NarrowDisk&) = delete;

 private:
  rlimit before_{};
  // Else the signal ends the process.
  void (*const handlerBefore_)(int) = std::signal(SIGXFSZ, SIG_IGN);
};
#endif

}  // namespace pmscan::tests
