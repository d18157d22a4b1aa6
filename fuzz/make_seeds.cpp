// make_seeds FOLDER CAPTURES PROFILES CORPORA: writes the seeds of the fuzz targets, a folder for
// each target: conversations that are written here, what simulated scanners and the captures in a
// folder say, files for those that read files, and the corpora in a folder, a file for each target
// with one input in hexadecimal digits in each line.

#include <algorithm>
#include <array>
#include <charconv>
#include <exception>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <map>
#include <set>
#include <stdexcept>
#include <string>
#include <vector>

#include "capture/file/capture_reader.h"
#include "capture/pcapng/pcapng_writer.h"
#include "fuzz/conversation_seeds.h"
#include "fuzz/readers/reader_seeds.h"
#include "fuzz/recording_device.h"
#include "interface/exports.h"
#include "interface/lifecycle.h"
#include "simulator/catalog/catalog.h"

namespace {

using namespace pmddb832;
using Bytes = std::vector<std::uint8_t>;

constexpr std::uint32_t kProcessDetach = 0;
constexpr std::size_t kEntriesOfTrace = 30;  // no longer than the targets take

// What a scanner says while it is opened.
Bytes OpeningAnswers(const std::string& name) {
  const auto scanner =
      simulator::MakeScanner(name, {64, 48, 300, std::vector<std::uint16_t>(9216)});
  fuzz::RecordingDevice device(*scanner);
  ScannerSettings settings{};
  settings.deviceInterface = &device;
  settings.useDeviceInterface = 1;
  PMOpenScanner(&settings);
  DllMain(&settings, kProcessDetach, nullptr);
  currentSettings = nullptr;
  extendedSupport = 0;
  return device.Answers();
}

class Corpora {
 public:
  explicit Corpora(std::filesystem::path folder) : folder_(std::move(folder)) {}

  void Add(const std::string& target, const Bytes& seed) {
    const std::filesystem::path folder = folder_ / target;
    std::filesystem::create_directories(folder);
    const std::string name = "seed-" + std::to_string(++counts_[target]);
    std::ofstream file(folder / name, std::ios::binary);
    file.write(reinterpret_cast<const char*>(seed.data()),
               static_cast<std::streamsize>(seed.size()));
  }

  std::size_t Total() const {
    std::size_t total = 0;
    for (const auto& [target, count] : counts_) total += count;
    return total;
  }

 private:
  std::filesystem::path folder_;
  std::map<std::string, std::size_t> counts_;
};

// What the scanner of a capture says until the first call has returned.
struct OpeningOfCapture {
  Bytes answers;
  bool isOver = false;

  void operator()(const capture::Transfer& transfer) {
    if (isOver || transfer.direction != capture::Direction::kFromScanner) return;
    const Bytes bytes = transfer.bytes.value_or(Bytes());
    answers.insert(answers.end(), bytes.begin(), bytes.end());
  }
  void operator()(const capture::SettingsChange& /*change*/) {}
  void operator()(const capture::CallBegin& /*call*/) {}
  void operator()(const capture::CallEnd& /*call*/) { isOver = true; }
};

void AddCapture(const std::filesystem::path& file, Corpora& corpora) {
  std::ifstream text(file);
  OpeningOfCapture opening;
  capture::Capture capture = capture::ReadCapture(text, file.string());
  for (const capture::Entry& entry : capture.entries) std::visit(opening, entry);
  corpora.Add("open_fuzzer", opening.answers);
  capture.entries.resize(std::min(capture.entries.size(), kEntriesOfTrace));
  corpora.Add("trace_fuzzer", capture::ToPcapng(capture));
}

Bytes FromHex(const std::string& digits) {
  Bytes bytes(digits.size() / 2);
  for (std::size_t i = 0; i < bytes.size(); ++i) {
    const char* const from = digits.data() + 2 * i;
    if (std::from_chars(from, from + 2, bytes[i], 16).ptr != from + 2) {
      throw std::runtime_error("hexadecimal digits expected, there is: " + digits);
    }
  }
  return bytes;
}

// A file TARGET.hex.
void AddCorpus(const std::filesystem::path& file, Corpora& corpora) {
  std::ifstream lines(file);
  for (std::string line; std::getline(lines, line);) corpora.Add(file.stem(), FromHex(line));
}

// In the order of their names, so that the seeds have the same names every time.
std::set<std::filesystem::path> FilesOf(const std::filesystem::path& folder) {
  std::set<std::filesystem::path> files;
  for (const auto& file : std::filesystem::directory_iterator(folder)) files.insert(file.path());
  return files;
}

void AddConversations(const std::string& target, fuzz::Family family, Corpora& corpora) {
  for (const fuzz::Conversation& conversation : fuzz::ConversationSeeds(family)) {
    Bytes seed(fuzz::kLongestConversation);
    seed.resize(fuzz::WriteConversation(conversation, seed));
    corpora.Add(target, seed);
  }
}

void AddConversions(Corpora& corpora) {
  constexpr std::array<std::uint8_t, 2> kPads{3, 0xFB};
  for (std::uint8_t routine = 0; routine < 8; ++routine) {
    for (std::uint8_t flags = 0; flags < 4; ++flags) {
      for (const std::uint8_t pad : kPads) {
        const std::uint8_t sign = pad < 128 ? 0 : 0xFF;
        Bytes seed{routine, static_cast<std::uint8_t>(flags | 4), pad, sign, 20, 0, 120, 0};
        seed.resize(seed.size() + 120, static_cast<std::uint8_t>(17 * flags));
        corpora.Add("conversion_fuzzer", seed);
      }
    }
  }
}

// The folders that seeds are made of.
struct Sources {
  const char* captures;
  const char* profiles;
  const char* kept;
};

void MakeSeeds(const char* folder, const Sources& sources) {
  std::filesystem::remove_all(folder);
  Corpora corpora(folder);
  AddConversations("extended_fuzzer", fuzz::Family::kExtended, corpora);
  AddConversations("standard_fuzzer", fuzz::Family::kStandard, corpora);
  for (const std::string& name : simulator::ScannerNames()) {
    corpora.Add("open_fuzzer", OpeningAnswers(name));
  }
  for (const std::filesystem::path& file : FilesOf(sources.captures)) {
    AddCapture(file, corpora);
  }
  AddConversions(corpora);
  fuzz::AddReaderSeeds(
      sources.captures, sources.profiles,
      [&](const std::string& target, const Bytes& seed) { corpora.Add(target, seed); });
  for (const std::filesystem::path& file : FilesOf(sources.kept)) AddCorpus(file, corpora);
  std::cout << "wrote " << corpora.Total() << " seeds to " << folder << "\n";
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 5) {
    std::cerr << "usage: make_seeds FOLDER CAPTURES PROFILES CORPORA\n";
    return 1;
  }
  try {
    MakeSeeds(argv[1], {argv[2], argv[3], argv[4]});
    return 0;
  } catch (const std::exception& error) {
    std::cerr << "make_seeds: " << error.what() << "\n";
    return 1;
  }
}
