#include "pmscan/scan/guarded_store.h"

#include "pmscan/command_line/failure.h"
#include "pmscan/report/error_codes.h"

namespace pmscan {

using Lock = std::lock_guard<std::mutex>;

void GuardedStore::Guard(PageStore& store) {
  const Lock lock(mutex_);
  RequireOpen();
  next_ = &store;
}

void GuardedStore::RequireOpen() const {
  if (isClosed_) throw Failure(kInterrupted);
}

RowSink& GuardedStore::Begin(std::uint32_t page, std::uint32_t width, std::uint32_t height) {
  const Lock lock(mutex_);
  RequireOpen();
  sink_ = &next_->Begin(page, width, height);
  page_ = {page, next_->FileOf(page), 0, height, 0};
  start_ = std::chrono::steady_clock::now();
  return *this;
}

void GuardedStore::Write(std::span<const std::uint8_t> rows, std::uint32_t lineBytes,
                         std::uint32_t lines) {
  const Lock lock(mutex_);
  RequireOpen();
  sink_->Write(rows, lineBytes, lines);
  page_.lines += lines;
}

void GuardedStore::EndPage(std::uint32_t lines) {
  sink_ = nullptr;
  next_->End(lines);
  if (lines == 0) return;
  const std::chrono::duration<double> time = std::chrono::steady_clock::now() - start_;
  page_.lines = lines;
  page_.seconds = time.count();
  saved_.push_back(page_);
}

void GuardedStore::End(std::uint32_t lines) {
  const Lock lock(mutex_);
  RequireOpen();
  EndPage(lines);
}

void GuardedStore::Finish() {
  const Lock lock(mutex_);
  RequireOpen();
  next_->Finish();
}

std::string GuardedStore::FileOf(std::uint32_t page) const {
  const Lock lock(mutex_);
  return next_->FileOf(page);
}

const std::vector<SavedFile>& GuardedStore::Files() const {
  static const std::vector<SavedFile> kNone;
  const Lock lock(mutex_);
  return next_ == nullptr ? kNone : next_->Files();
}

std::vector<SavedPage> GuardedStore::Close() {
  const Lock lock(mutex_);
  isClosed_ = true;
  if (sink_ != nullptr) EndPage(page_.lines);
  if (next_ != nullptr) next_->Finish();
  return saved_;
}

bool GuardedStore::IsClosed() const {
  const Lock lock(mutex_);
  return isClosed_;
}

}  // namespace pmscan
