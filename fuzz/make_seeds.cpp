// make_seeds FOLDER CAPTURES: writes the seed corpora of the fuzz targets, a folder for each
// target, from conversations with the simulated scanners and from the captures in a folder.

#include <array>
#include <cstring>
#include <exception>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <map>
#include <set>
#include <string>
#include <vector>

#include "capture/file/capture_reader.h"
#include "capture/file/settings_text.h"
#include "fuzz/fuzz_host.h"
#include "fuzz/recording_device.h"
#include "interface/exports.h"
#include "interface/lifecycle.h"
#include "simulator/catalog/catalog.h"

namespace {

using namespace pmddb832;
using Bytes = std::vector<std::uint8_t>;

constexpr std::uint32_t kProcessDetach = 0;
constexpr std::uint8_t kRows = 7;  // lines of a buffer

struct Scan {
  std::uint8_t pixelType;
  std::uint8_t outputFormat;
  std::uint8_t flags;  // mirror, preview, mono, gamma, colour, halftone, optionS, keepPaper
  std::uint8_t source;
};

constexpr std::array<Scan, 14> kScans{{{0, 0, 0x00, 0},
                                       {0, 0, 0x01, 0},
                                       {1, 1, 0x00, 0},
                                       {2, 2, 0x00, 0},
                                       {2, 2, 0x02, 0},
                                       {3, 3, 0x00, 0},
                                       {4, 5, 0x00, 0},
                                       {5, 5, 0x00, 0},
                                       {5, 1, 0x18, 0},
                                       {5, 5, 0x04, 1},
                                       {6, 6, 0x00, 0},
                                       {7, 7, 0x00, 0},
                                       {7, 1, 0x02, 0},
                                       {8, 8, 0x01, 0}}};

Bytes operator+(Bytes left, const Bytes& right) {
  left.insert(left.end(), right.begin(), right.end());
  return left;
}

Bytes Words(std::initializer_list<std::uint16_t> words) {
  Bytes bytes;
  for (const std::uint16_t word : words) {
    bytes.push_back(static_cast<std::uint8_t>(word));
    bytes.push_back(static_cast<std::uint8_t>(word >> 8));
  }
  return bytes;
}

// 41 x 20 pixels from (8, 5) at 300 dpi, as ApplyScanChoices reads it.
Bytes Choices(const Scan& scan) {
  Bytes choices = Bytes{scan.pixelType} + Words({41, 20, 8, 5, 2, 1, 300, 100, 0xFFFF, 100}) +
                  Bytes{scan.flags, 0, scan.source, 0, 1, 1};
  choices.resize(fuzz::kScanChoiceBytes);
  return choices;
}

Bytes RecordOf(const ScannerSettings& settings) {
  Bytes record(sizeof settings);
  std::memcpy(record.data(), &settings, record.size());
  return record;
}

// Calls of calls_fuzzer behind their count, room for twelve of four bytes.
Bytes Counted(const Bytes& calls) {
  Bytes counted{12};
  counted.insert(counted.end(), calls.begin(), calls.end());
  counted.resize(1 + 4 * 12);
  return counted;
}

void Acquire(ScannerSettings& settings, const Scan& scan) {
  const Bytes choices = Choices(scan);
  fuzz::Input input(choices);
  fuzz::ApplyScanChoices(input, settings);
  AcquisitionSetup setup{};
  PMInitAcquire(scan.outputFormat, nullptr, &setup);
  Bytes buffer(std::size_t{setup.lineBytes} * kRows);
  AcquisitionBand band{kAcquisitionGoOn, 0, 0, 0, 0};
  while (band.status == kAcquisitionGoOn && band.done == 0) {
    PMAcquireImage(buffer.data(), static_cast<std::uint32_t>(buffer.size()), &band);
  }
}

// What a scanner says while it is opened and, where there is a scan, scanned from.
Bytes Answers(const std::string& name, const Scan* scan, ScannerSettings& settings) {
  const auto scanner =
      simulator::MakeScanner(name, {64, 48, 300, std::vector<std::uint16_t>(9216)});
  fuzz::RecordingDevice device(*scanner);
  settings.deviceInterface = &device;
  settings.useDeviceInterface = 1;
  PMOpenScanner(&settings);
  if (scan != nullptr) Acquire(settings, *scan);
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

void AddScan(const std::string& scanner, const Scan& scan, Corpora& corpora) {
  ScannerSettings settings{};
  const Bytes answers = Answers(scanner, &scan, settings);
  const Bytes front{scan.outputFormat, kRows};
  corpora.Add("scan_fuzzer", front + Choices(scan) + answers);
  corpora.Add("record_fuzzer", front + RecordOf(settings) + answers);
  const Bytes setUp = Bytes{1, 0, 12} + Choices(scan) + Bytes{scan.outputFormat, 2};
  // open; choose; set up; acquire twice; abort; close
  corpora.Add("calls_fuzzer", Counted(setUp + Bytes{kRows, 3, kRows, 3, 0, 1, 0, 0}) + answers);
  // open; choose; set up; acquire, and close within the 20th transfer
  corpora.Add("calls_fuzzer", Counted(setUp + Bytes{20, 16, kRows, 3, 0, 0}) + answers);
}

// What a capture holds of the inputs of a fuzz target.
struct CaptureInput {
  Bytes opening;  // what the scanner says until the first call has returned
  Bytes answers;  // and in all
  ScannerSettings settings{};
  std::uint8_t outputFormat = 0;
  bool isOpen = false;

  void operator()(const capture::Transfer& transfer) {
    if (transfer.direction != capture::Direction::kFromScanner) return;
    answers = answers + transfer.bytes.value_or(Bytes());
  }
  void operator()(const capture::SettingsChange& change) { capture::Apply(change, settings); }
  void operator()(const capture::CallBegin& call) {
    if (call.name != "PMInitAcquire") return;
    outputFormat = static_cast<std::uint8_t>(call.arguments.at(0).value);
  }
  void operator()(const capture::CallEnd&) {
    if (!isOpen) opening = answers;
    isOpen = true;
  }
};

void AddCapture(const std::filesystem::path& file, Corpora& corpora) {
  std::ifstream text(file);
  CaptureInput input;
  for (const capture::Entry& entry : capture::ReadCapture(text, file.string()).entries) {
    std::visit(input, entry);
  }
  corpora.Add("open_fuzzer", input.opening);
  corpora.Add("record_fuzzer",
              Bytes{input.outputFormat, kRows} + RecordOf(input.settings) + input.answers);
}

// In the order of their names, so that the seeds have the same names every time.
void AddCaptures(const std::filesystem::path& folder, Corpora& corpora) {
  std::set<std::filesystem::path> files;
  for (const auto& file : std::filesystem::directory_iterator(folder)) files.insert(file.path());
  for (const std::filesystem::path& file : files) AddCapture(file, corpora);
}

void AddConversions(Corpora& corpora) {
  for (std::uint8_t routine = 0; routine < 8; ++routine) {
    for (std::uint8_t flags = 0; flags < 4; ++flags) {
      const Bytes front{routine, static_cast<std::uint8_t>(flags | 4), 3, 0, 20, 0, 120, 0};
      corpora.Add("conversion_fuzzer", front + Bytes(120, static_cast<std::uint8_t>(17 * flags)));
    }
  }
}

void MakeSeeds(const char* folder, const char* captures) {
  Corpora corpora(folder);
  for (const std::string& name : simulator::ScannerNames()) {
    ScannerSettings settings{};
    corpora.Add("open_fuzzer", Answers(name, nullptr, settings));
  }
  for (const char* scanner : {"extended", "extended:RV3100", "standard", "standard:QM2700"}) {
    for (const Scan& scan : kScans) AddScan(scanner, scan, corpora);
  }
  AddCaptures(captures, corpora);
  AddConversions(corpora);
  std::cout << "wrote " << corpora.Total() << " seeds to " << folder << "\n";
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 3) {
    std::cerr << "usage: make_seeds FOLDER CAPTURES\n";
    return 1;
  }
  try {
    MakeSeeds(argv[1], argv[2]);
    return 0;
  } catch (const std::exception& error) {
    std::cerr << "make_seeds: " << error.what() << "\n";
    return 1;
  }
}
