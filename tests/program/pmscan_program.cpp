#include "tests/program/pmscan_program.h"

#include <algorithm>
#include <fstream>
#include <iterator>

#include "pmscan/command_line/file_name.h"
#include "tests/program/process.h"

namespace pmscan::tests {
namespace {

std::string ReadAll(const std::filesystem::path& path) {
  std::ifstream stream(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(stream), {}};
}

// Texts of programs have the line ends of the system.
std::string TextOf(std::string bytes) {
  const std::string lineEnd = kLineEnd;
  for (std::size_t at = 0; (at = bytes.find(lineEnd, at)) != bytes.npos; ++at) {
    bytes.replace(at, lineEnd.size(), "\n");
  }
  return bytes;
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
      folder_(std::filesystem::current_path() / ("pmscan_program_" + std::to_string(OwnNumber()))) {
  std::filesystem::remove_all(folder_);
  std::filesystem::create_directory(folder_);
}

ProgramUnderTest::~ProgramUnderTest() {
  std::error_code ignored;
  std::filesystem::remove_all(folder_, ignored);
}

ProgramResult ProgramUnderTest::Run(const std::string& arguments) const {
  ProgramResult result;
  result.exitCode = RunProcess({program_, arguments, folder_, Output(), Errors()});
  result.outputBytes = ReadAll(Output());
  result.output = TextOf(result.outputBytes);
  result.errors = TextOf(ReadAll(Errors()));
  return result;
}

std::string ProgramUnderTest::Contents(const std::string& file) const {
  return ReadAll(folder_ / PathOf(file));
}

void ProgramUnderTest::Write(const std::string& file, const std::string& contents) const {
  std::ofstream(folder_ / file, std::ios::binary) << contents;
}

std::vector<std::string> ProgramUnderTest::Files() const {
  std::vector<std::string> names;
  for (const auto& entry : std::filesystem::directory_iterator(folder_)) {
    if (entry.path() == Output() || entry.path() == Errors()) continue;
    names.push_back(Utf8(entry.path().filename()));
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
