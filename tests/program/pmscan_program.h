#pragma once

#include <cstdint>
#include <filesystem>
#include <string>
#include <vector>

#include "tests/program/process.h"

namespace pmscan::tests {

struct ProgramResult {
  unsigned long exitCode = 0;
  std::string outputBytes;  // standard output as it came
  std::string output;       // standard output, lines ending in "\n"
  std::string errors;       // standard error, likewise
};

// pmscan in an empty folder of its own, which goes with this object.
class ProgramUnderTest {
 public:
  // `programPath` counts from the folder of the test's own program.
  explicit ProgramUnderTest(const std::filesystem::path& programPath = PmscanPath());
  ~ProgramUnderTest();
  ProgramUnderTest(const ProgramUnderTest&) = delete;
  ProgramUnderTest& operator=(const ProgramUnderTest&) = delete;

  // Runs it with the arguments, which hold no quotes, until it ends.
  ProgramResult Run(const std::string& arguments) const;

  const std::filesystem::path& Folder() const { return folder_; }

  // Empty when there is no such file. Names are in UTF-8.
  std::string Contents(const std::string& file) const;
  void Write(const std::string& file, const std::string& contents) const;

  // Names of the files in the folder, sorted, without those of the program's own output.
  std::vector<std::string> Files() const;

 private:
  std::filesystem::path Output() const { return folder_ / "output.txt"; }
  std::filesystem::path Errors() const { return folder_ / "errors.txt"; }

  const std::filesystem::path program_;
  const std::filesystem::path folder_;
};

// Heights in lines of the pages of a TIFF file, from its contents.
std::vector<std::uint32_t> TiffHeights(const std::string& file);

}  // namespace pmscan::tests
