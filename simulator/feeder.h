#pragma once

#include <cstddef>
#include <vector>

#include "simulator/picture.h"

namespace simulator {

// The document feeder: a tray of pages and a paper path that holds one of them.
class Feeder {
 public:
  explicit Feeder(std::vector<Picture> pagesInTray) : pages(std::move(pagesInTray)) {}

  // Sees to it that a page that was not scanned yet lies in the path; a scanned one leaves for it.
  // False when there is none, or a jammed one is in the way.
  bool Load();

  // Throws out the page in the path; false when there is none.
  bool Eject();

  // The page in the path; it stays valid as long as the feeder. Call it when one was loaded.
  const Picture& Page() const { return pages[next - 1]; }

  void PageWasScanned() { scanned = true; }
  void Jam() { jammed = true; }
  bool Jammed() const { return jammed; }

  // No page is left to scan: the tray is empty, and what is in the path was scanned already.
  bool PaperOut() const { return next == pages.size() && (!inPath || scanned); }

 private:
  std::vector<Picture> pages;
  std::size_t next = 0;  // the first page still in the tray
  bool inPath = false;   // page next - 1
  bool scanned = false;
  bool jammed = false;
};

}  // namespace simulator
