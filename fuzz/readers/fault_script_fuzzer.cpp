// Any file as a script of faults, on the cable of a scanner that is opened then.

#include <array>

#include "fuzz/readers/input_file.h"
#include "simulator/catalog/catalog.h"
#include "simulator/catalog/profile_error.h"
#include "simulator/faults/fault_injector.h"
#include "simulator/faults/fault_script.h"

namespace {

// What a host sends first, with the answers that it asks for.
void Open(simulator::FaultInjector& cable) {
  std::array<std::uint8_t, 2> identity{0x1B, 0x49};
  std::array<std::uint8_t, 80> answer{};
  for (int i = 0; i < 3; ++i) {
    std::uint32_t bytes = answer.size();
    cable.RawWriteData(identity.data(), identity.size(), nullptr);
    cable.RawReadData(answer.data(), &bytes, nullptr);
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const pmddb832::fuzz::InputFile file({data, size});
  try {
    const auto scanner = simulator::MakeScanner("extended", {});
    simulator::FaultInjector cable(*scanner, simulator::ReadFaultScript(file.Name()));
    Open(cable);
  } catch (const simulator::ProfileError&) {
    return 0;
  }
  return 0;
}
