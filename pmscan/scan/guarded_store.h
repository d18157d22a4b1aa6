#pragma once

#include <chrono>
#include <mutex>
#include <vector>

#include "pmscan/scan/batch.h"

namespace pmscan {

// Passes the pages of a scan on, and can be closed by another thread than the one that scans.
class GuardedStore : public PageStore, private RowSink {
 public:
  // Where the pages go; before the first one, once. It outlives this.
  void Guard(PageStore& store);

  RowSink& Begin(std::uint32_t page, std::uint32_t width, std::uint32_t height) override;
  void End(std::uint32_t lines) override;
  void Finish() override;
  std::string FileOf(std::uint32_t page) const override;
  const std::vector<SavedFile>& Files() const override;

  // Ends the page that is coming with the lines that came, and finishes. Returns all pages that are
  // kept. From here on whoever scans gets Failure(kInterrupted).
  std::vector<SavedPage> Close();
  bool IsClosed() const;

 private:
  void Write(std::span<const std::uint8_t> rows, std::uint32_t lineBytes,
             std::uint32_t lines) override;
  void RequireOpen() const;
  void EndPage(std::uint32_t lines);

  mutable std::mutex mutex_;
  PageStore* next_ = nullptr;
  RowSink* sink_ = nullptr;  // of the page that is coming
  SavedPage page_;
  std::chrono::steady_clock::time_point start_;  // of that page
  std::vector<SavedPage> saved_;
  bool isClosed_ = false;
};

}  // namespace pmscan
