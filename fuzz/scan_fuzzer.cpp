// A whole scan: what the host asks for, then the device's bytes. The seeds decide which family the
// scanner is of; a mutated probe reply leads to the other one.

#include "fuzz/fuzz_host.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace pmddb832::fuzz;
  Input input({data, size});
  const std::uint8_t outputFormat = input.Byte();
  const std::uint8_t rows = input.Byte();
  Input choices(input.Take(kScanChoiceBytes));
  FuzzHost host(input.Rest());
  host.Open();
  ApplyScanChoices(choices, host.settings);
  host.Scan(outputFormat, rows);
  host.Scan(outputFormat, 1);
  return 0;
}
