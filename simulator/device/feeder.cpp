#include "simulator/device/feeder.h"

#include <utility>

namespace simulator {

Feeder::Feeder(std::vector<Picture> pagesInTray, const std::vector<std::uint32_t>& copies)
    : pages_(std::move(pagesInTray)) {
  for (std::size_t page = 0; page < pages_.size(); ++page) {
    tray_.insert(tray_.end(), page < copies.size() ? copies[page] : 1, page);
  }
}

bool Feeder::Load() {
  if (jammed_) return false;
  if (inPath_ && !scanned_) return true;
  if (next_ == tray_.size()) return false;
  ++next_;
  inPath_ = true;
  scanned_ = false;
  return true;
}

bool Feeder::Eject() {
  if (!inPath_) return false;
  inPath_ = scanned_ = jammed_ = false;
  return true;
}

}  // namespace simulator
