#include "fuzz/readers/reader_seeds.h"

#include <fstream>
#include <iterator>
#include <set>

#include "tests/pictures/sample_pictures.h"

namespace pmddb832::fuzz {
namespace {

std::vector<std::uint8_t> BytesOf(const std::string& text) {
  return {text.begin(), text.end()};
}

// In the order of their names, so that the seeds have the same names every time.
void AddFiles(const std::filesystem::path& folder, const std::string& target,
              const TakeSeed& take) {
  std::set<std::filesystem::path> files;
  for (const auto& file : std::filesystem::directory_iterator(folder)) {
    if (file.is_regular_file()) files.insert(file.path());
  }
  for (const std::filesystem::path& file : files) {
    std::ifstream stream(file, std::ios::binary);
    take(target, std::vector<std::uint8_t>(std::istreambuf_iterator<char>(stream), {}));
  }
}

void AddSettings(const TakeSeed& take) {
  std::string table = "g# a slope\n";
  for (int i = 0; i < 256; ++i) table += std::to_string(i) + (i % 16 == 15 ? "\n" : ", ");
  take("settings_fuzzer", BytesOf(table));
  take("settings_fuzzer", BytesOf("c 40 -4 -4\n0, 32, 0  # green\n0 -16 48"));
  take("settings_fuzzer",
       BytesOf(R"(p{"mode": "lineart", "resolution": 200, "mirror": true, "area": "a4",
 "device": "sim:extended:QM2500", "brightness": -2, "halftone": "dots", "gamma": "2.2"})"));
}

}  // namespace

void AddReaderSeeds(const std::filesystem::path& captures, const std::filesystem::path& profiles,
                    const TakeSeed& take) {
  AddFiles(captures, "capture_fuzzer", take);
  AddFiles(profiles, "profile_fuzzer", take);
  AddFiles(profiles / "faults", "fault_script_fuzzer", take);
  AddSettings(take);
  for (const pmscan::tests::SamplePicture& picture : pmscan::tests::kSamplePictures) {
    take("original_fuzzer", BytesOf(FileOf(picture)));
  }
}

}  // namespace pmddb832::fuzz
