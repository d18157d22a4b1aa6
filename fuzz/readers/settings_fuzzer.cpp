// Any file as a gamma table, a colour matrix or a saved profile; the first byte says which.

#include "fuzz/readers/input_file.h"
#include "pmscan/command_line/command_line.h"
#include "pmscan/command_line/failure.h"
#include "pmscan/scan/scan_profile.h"
#include "pmscan/settings/number_file.h"

namespace {

void Read(std::uint8_t kind, const pmddb832::fuzz::InputFile& file) {
  switch (kind) {
    case 'g':
      pmscan::ReadGammaTables(file.Name());
      break;
    case 'c':
      pmscan::ReadColorMatrix(file.Name());
      break;
    default:
      // What is no profile is refused quickly; the command line takes its time.
      pmscan::LoadProfile(file.folder, "input");
      pmscan::ParseCommandLine({"scan", "-o", "page.png", "--profile", "input"}, file.folder);
      break;
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  if (size == 0) return 0;
  const pmddb832::fuzz::InputFile file({data + 1, size - 1});
  try {
    Read(data[0], file);
  } catch (const pmscan::Failure&) {
    return 0;
  }
  return 0;
}
