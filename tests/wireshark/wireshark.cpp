#include "tests/wireshark/wireshark.h"

#include <unistd.h>

#include <algorithm>
#include <array>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <stdexcept>
#include <string_view>

#include "capture/pcapng/pcapng_writer.h"

namespace pmddb832::tests {
namespace {

constexpr int kNoSuchCommand = 127 << 8;

// A file that is removed with this object.
class TemporaryFile {
 public:
  explicit TemporaryFile(const std::string& suffix)
      : path_(std::filesystem::temp_directory_path() /
              ("pmddb832-" + std::to_string(getpid()) + suffix)) {}
  ~TemporaryFile() {
    std::error_code ignored;
    std::filesystem::remove(path_, ignored);
  }
  TemporaryFile(const TemporaryFile&) = delete;
  TemporaryFile& operator=(const TemporaryFile&) = delete;

  std::string Name() const { return path_.string(); }

 private:
  const std::filesystem::path path_;
};

std::string Quoted(const std::string& text) {
  return "'" + text + "'";
}

std::string TextOf(const std::string& fileName) {
  std::ifstream file(fileName);
  return {std::istreambuf_iterator<char>(file), {}};
}

// What the command prints; its errors go to a file of their own.
std::string OutputOf(const std::string& command) {
  const TemporaryFile errors(".errors");
  FILE* const pipe = popen((command + " 2>" + Quoted(errors.Name())).c_str(), "r");
  if (pipe == nullptr) throw std::runtime_error("no process for: " + command);
  std::string output;
  std::array<char, 4096> buffer{};
  while (const std::size_t count = std::fread(buffer.data(), 1, buffer.size(), pipe)) {
    output.append(buffer.data(), count);
  }
  const int status = pclose(pipe);
  if (status == kNoSuchCommand) {
    throw std::runtime_error(
        "tshark is needed here: apt-get install --no-install-recommends tshark");
  }
  const std::string said = TextOf(errors.Name());
  if (status != 0 || said.find("Lua: ") != std::string::npos) throw std::runtime_error(said);
  return output;
}

std::string CommandFor(const std::string& file, const std::vector<std::string>& fields,
                       const std::string& preference) {
  std::string command = "LC_ALL=C.UTF-8 tshark -n -X lua_script:" + Quoted(PMDDB832_DISSECTOR) +
                        " -r " + Quoted(file) + " -T fields -E 'separator=|'";
  if (!preference.empty()) command += " -o " + Quoted(preference);
  for (const std::string& field : fields) command += " -e " + Quoted(field);
  return command;
}

}  // namespace

Dissection::Dissection(const capture::Capture& capture, const std::vector<std::string>& fields,
                       const std::string& preference)
    : Dissection(capture::ToPcapng(capture), fields, preference) {}

Dissection::Dissection(const std::vector<std::uint8_t>& bytes,
                       const std::vector<std::string>& fields, const std::string& preference) {
  const TemporaryFile file(".pcapng");
  std::ofstream(file.Name(), std::ios::binary)
      .write(reinterpret_cast<const char*>(bytes.data()),
             static_cast<std::streamsize>(bytes.size()));
  const std::string output = OutputOf(CommandFor(file.Name(), fields, preference));
  for (std::size_t at = 0; at < output.size();) {
    const std::size_t end = output.find('\n', at);
    lines_.push_back(output.substr(at, end - at));
    at = end + 1;
  }
}

std::vector<std::uint8_t> BusTrace(const capture::Capture& capture) {
  constexpr std::string_view kInterface = "still-image device";
  constexpr std::string_view kBus = "USBPcap1 of a host";
  static_assert(kBus.size() == kInterface.size());
  std::vector<std::uint8_t> file = capture::ToPcapng(capture);
  const auto place = std::search(file.begin(), file.end(), kInterface.begin(), kInterface.end());
  if (place == file.end()) throw std::runtime_error("the file names no interface");
  std::copy(kBus.begin(), kBus.end(), place);
  return file;
}

Dissection Summaries(const capture::Capture& capture) {
  return {capture, {"_ws.col.Info"}};
}

}  // namespace pmddb832::tests
