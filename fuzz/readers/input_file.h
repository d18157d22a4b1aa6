#pragma once

#include <unistd.h>

#include <cstdint>
#include <filesystem>
#include <fstream>
#include <span>
#include <string>

namespace pmddb832::fuzz {

// The input of a fuzz target as a file, for readers that take a file's name. The folder is that of
// the process and stays until the system clears it.
class InputFile {
 public:
  explicit InputFile(std::span<const std::uint8_t> input) {
    std::filesystem::create_directories(folder);
    std::ofstream(folder / "input.json", std::ios::binary)
        .write(reinterpret_cast<const char*>(input.data()),
               static_cast<std::streamsize>(input.size()));
  }

  std::string Name() const { return (folder / "input.json").string(); }

  const std::filesystem::path folder =
      std::filesystem::temp_directory_path() / ("pmddb832-fuzz-" + std::to_string(getpid()));
};

}  // namespace pmddb832::fuzz
