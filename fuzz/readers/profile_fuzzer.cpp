// Any text as the file of a simulated scanner, and the scanner that it makes.

#include "simulator/catalog/profile.h"
#include "simulator/catalog/profile_error.h"
#include "simulator/faults/fault_injector.h"

namespace {

simulator::Picture SmallPicture() {
  return {8, 6, 300, std::vector<std::uint16_t>(144)};
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  try {
    const simulator::Profile profile =
        simulator::ParseProfile({reinterpret_cast<const char*>(data), size}, "input.json");
    const auto scanner = simulator::MakeScanner(
        profile, [](const std::string&) { return SmallPicture(); }, SmallPicture());
    const simulator::FaultInjector cable(*scanner, profile.faults);
  } catch (const simulator::ProfileError&) {
    return 0;
  }
  return 0;
}
