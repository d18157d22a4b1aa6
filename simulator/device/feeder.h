#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "simulator/page/picture.h"

namespace simulator {

// The document feeder: a tray of pages and a paper path that holds one of them.
class Feeder {
 public:
  // The first page lies on top, with its copies below it; once where `copies` has no number.
  Feeder(std::vector<Picture> pagesInTray, const std::vector<std::uint32_t>& copies);

  // Sees to it that a page that was not scanned yet lies in the path; a scanned one leaves for it.
  // False when there is none, or a jammed one is in the way.
  bool Load();

  // Throws out the page in the path; false when there is none.
  bool Eject();

  // The page in the path; it stays valid as long as the feeder. Call it when one was loaded.
  const Picture& Page() const { return pages_[tray_[next_ - 1]]; }

  void PageWasScanned() { scanned_ = true; }
  void Jam() { jammed_ = true; }
  bool Jammed() const { return jammed_; }

  // No page is left to scan: the tray is empty, and what is in the path was scanned already.
  bool PaperOut() const { return next_ == tray_.size() && (!inPath_ || scanned_); }

 private:
  const std::vector<Picture> pages_;
  std::vector<std::size_t> tray_;  // which of the pages lie there, from the top
  std::size_t next_ = 0;           // the first one still in the tray
  bool inPath_ = false;            // the one before
  bool scanned_ = false;
  bool jammed_ = false;
};

}  // namespace simulator
