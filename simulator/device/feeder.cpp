#include "simulator/device/feeder.h"

#include <utility>

namespace simulator {

Feeder::Feeder(std::vector<Picture> pagesInTray, const std::vector<std::uint32_t>& copies)
    : pages(std::move(pagesInTray)) {
  for (std::size_t page = 0; page < pages.size(); ++page) {
    tray.insert(tray.end(), page < copies.size() ? copies[page] : 1, page);
  }
}

bool Feeder::Load() {
  if (jammed) return false;
  if (inPath && !scanned) return true;
  if (next == tray.size()) return false;
  ++next;
  inPath = true;
  scanned = false;
  return true;
}

bool Feeder::Eject() {
  if (!inPath) return false;
  inPath = scanned = jammed = false;
  return true;
}

}  // namespace simulator
