#include "bench/memory_peak.h"

#include <fstream>
#include <string>

namespace pmddb832::bench {
namespace {

// A row of the process's status, in kilobytes.
std::size_t StatusRow(const std::string& name) {
  std::ifstream status("/proc/self/status");
  for (std::string line; std::getline(status, line);) {
    if (line.rfind(name + ":", 0) == 0) return std::stoul(line.substr(name.size() + 1));
  }
  return 0;
}

void ResetPeak() {
  std::ofstream("/proc/self/clear_refs") << "5";
}

}  // namespace

MemoryWatch::MemoryWatch() : residentKilobytes_(StatusRow("VmRSS")) {
  ResetPeak();
}

std::size_t MemoryWatch::GrownKilobytes() const {
  const std::size_t peak = StatusRow("VmHWM");
  return peak > residentKilobytes_ ? peak - residentKilobytes_ : 0;
}

}  // namespace pmddb832::bench
