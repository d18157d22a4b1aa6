#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "pmscan/command_line/progress.h"
#include "pmscan/scan/acquisition.h"
#include "pmscan/scan/line_window.h"
#include "pmscan/scan/module_exports.h"
#include "pmscan/scan/scan_source.h"

namespace pmscan {

struct SavedPage {
  std::uint32_t number = 0;  // from 1
  std::string file;
  std::uint32_t lines = 0;   // that came
  std::uint32_t height = 0;  // lines of the whole page
  double seconds = 0;        // from the scan's start

  bool IsWhole() const { return lines == height; }
};

struct SavedFile {
  std::string name;
  std::uint64_t bytes = 0;
};

// Where the pages of a scan go. Everything may throw Failure.
class PageStore {
 public:
  virtual ~PageStore() = default;

  // A page of such a size begins; its lines go into the sink, until it or the next one ends.
  virtual RowSink& Begin(std::uint32_t page, std::uint32_t width, std::uint32_t height) = 0;

  // The page ends with so many lines, all or less. With none there is no such page.
  virtual void End(std::uint32_t lines) = 0;

  // No page follows: all that ended are in their files.
  virtual void Finish() = 0;

  virtual std::string FileOf(std::uint32_t page) const = 0;
  // The files that are in their places.
  virtual const std::vector<SavedFile>& Files() const = 0;
};

// What ends a batch well.
enum class BatchEnd { kAllPages, kFeederEmpty };

struct Batch {
  ScanSource source;
  LineWindow window;                   // what the pictures show of the lines
  std::uint32_t outputFormat = 0;      // the first argument of PMInitAcquire
  std::optional<std::uint32_t> pages;  // at most; nothing: until the feeder is empty
  std::uint32_t paperSeconds = 0;      // how long to wait for paper, each time the feeder is empty
  bool keepsPartial = false;           // what came of a page that failed
};

struct BatchManners {
  AcquisitionManners acquisition;
  // Called before the feeder is asked again, from 1; a second goes by in it.
  std::function<void(std::uint32_t trial)> waitForPaper;
  ProgressMeter* progress = nullptr;  // may be null
};

// Scans page by page into the store; the source is switched on. A feeder that is empty after at
// least one page ends the batch well. Throws Failure for everything else. `saved` gets a row for
// each page as soon as it is kept, so it also tells what a failed batch left behind: whole pages,
// and after kInterrupted, or if the batch says so, the part of a page that came.
BatchEnd ScanPages(const ModuleExports& module, const Batch& batch, const BatchManners& manners,
                   PageStore& store, std::vector<SavedPage>& saved);

}  // namespace pmscan
