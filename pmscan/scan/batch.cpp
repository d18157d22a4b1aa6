#include "pmscan/scan/batch.h"

#include <chrono>

#include "pmscan/command_line/failure.h"
#include "pmscan/report/error_codes.h"

namespace pmscan {
namespace {

using Clock = std::chrono::steady_clock;

// Passes the lines on, counts them, and shows how far they are.
class CountingSink : public RowSink {
 public:
  CountingSink(RowSink& sink, ProgressMeter* meter) : next_(sink), progress_(meter) {}

  void Write(std::span<const std::uint8_t> rows, std::uint32_t lineBytes,
             std::uint32_t count) override {
    next_.Write(rows, lineBytes, count);
    lines += count;
    if (progress_ != nullptr) progress_->Show(lines);
  }

  std::uint32_t lines = 0;

 private:
  RowSink& next_;
  ProgressMeter* const progress_;
};

// Paper may yet be put in, and the cover is open meanwhile.
bool MayChange(std::uint32_t status) {
  return status == kOptionEmpty || status == kOptionOpen;
}

class BatchScan {
 public:
  BatchScan(const ModuleExports& moduleExports, const Batch& whatToScan,
            const BatchManners& howToScan, PageStore& pageStore, std::vector<SavedPage>& savedPages)
      : module_(moduleExports),
        batch_(whatToScan),
        manners_(howToScan),
        store_(pageStore),
        saved_(savedPages) {}

  BatchEnd Run();

 private:
  void RequireReady() const;
  void ScanPage();
  void Keep(std::uint32_t lines, std::uint32_t height, Clock::time_point start);
  std::uint32_t Number() const { return static_cast<std::uint32_t>(saved_.size()) + 1; }
  bool HasAll() const { return batch_.pages && saved_.size() >= *batch_.pages; }

  const ModuleExports& module_;
  const Batch& batch_;
  const BatchManners& manners_;
  PageStore& store_;
  std::vector<SavedPage>& saved_;
  bool isInPage_ = false;  // a page that had begun to come failed
};

BatchEnd BatchScan::Run() {
  while (!HasAll()) {
    try {
      RequireReady();
      ScanPage();
    } catch (const Failure& failure) {
      const bool isEnd = failure.code == kOptionEmpty && !isInPage_ && !saved_.empty();
      if (isEnd) return BatchEnd::kFeederEmpty;
      throw;
    }
  }
  return BatchEnd::kAllPages;
}

void BatchScan::RequireReady() const {
  for (std::uint32_t trial = 1;; ++trial) {
    if (manners_.acquisition.isInterrupted()) throw Failure(kInterrupted);
    const std::uint32_t status = module_.getOptionStatus(batch_.source.code);
    if (status == 0) return;
    if (!MayChange(status) || trial > batch_.paperSeconds) throw Failure(status);
    manners_.waitForPaper(trial);
  }
}

void BatchScan::ScanPage() {
  const Clock::time_point start = Clock::now();
  // What the callback would tell, the lines that come tell as well.
  const pmddb832::AcquisitionSetup setup =
      PrepareAcquisition(module_, batch_.outputFormat, nullptr);
  if (manners_.progress != nullptr) manners_.progress->BeginPage(Number(), setup.heightLines);
  WindowSink window(batch_.window, store_.Begin(Number(), batch_.window.width, setup.heightLines));
  CountingSink sink(window, manners_.progress);
  try {
    AcquirePicture(module_, setup, manners_.acquisition, sink);
  } catch (const Failure& failure) {
    isInPage_ = sink.lines > 0;
    const bool isKept = failure.code == kInterrupted || batch_.keepsPartial;
    Keep(isKept ? sink.lines : 0, setup.heightLines, start);
    throw;
  }
  Keep(sink.lines, setup.heightLines, start);
}

void BatchScan::Keep(std::uint32_t lines, std::uint32_t height, Clock::time_point start) {
  store_.End(lines);
  if (lines == 0) return;
  const std::chrono::duration<double> time = Clock::now() - start;
  saved_.push_back({Number(), store_.FileOf(Number()), lines, height, time.count()});
}

}  // namespace

BatchEnd ScanPages(const ModuleExports& module, const Batch& batch, const BatchManners& manners,
                   PageStore& store, std::vector<SavedPage>& saved) {
  BatchEnd end{};
  try {
    end = BatchScan(module, batch, manners, store, saved).Run();
  } catch (const Failure&) {
    store.Finish();
    throw;
  }
  store.Finish();
  return end;
}

}  // namespace pmscan
