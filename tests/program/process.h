#pragma once

#include <cstdint>
#include <filesystem>
#include <string>

// What each system does in its own way when a test runs a program.
namespace pmscan::tests {

// Of the texts that programs print.
extern const char* const kLineEnd;
// How the system ends the sentence that a library is not there.
extern const char* const kNoLibraryWords;
// The variable that names the folder for settings.
extern const char* const kSettingsVariable;
// The variable that names the folder for temporary files.
extern const char* const kTemporaryVariable;

// Where pmscan lies, from the folder of the test's own program on.
std::filesystem::path PmscanPath();

std::filesystem::path OwnFolder();
std::uint32_t OwnNumber();

// For the programs that are run from here on.
void SetVariable(const std::string& name, const std::string& value);

struct ProcessToRun {
  std::filesystem::path program;
  std::string arguments;  // in UTF-8, blanks between them; quotes hold one together on Windows only
  std::filesystem::path folder;
  std::filesystem::path output;  // files for standard output and standard error
  std::filesystem::path errors;
};

// Waits until it ends, and returns its exit code. Throws std::runtime_error when it does not start,
// or does not end by itself.
unsigned long RunProcess(const ProcessToRun& process);

}  // namespace pmscan::tests
