#include "pmscan/scan/watched_work.h"

#include <condition_variable>
#include <exception>
#include <memory>
#include <mutex>
#include <thread>
#include <utility>

namespace pmscan {
namespace {

// What both threads know; it lives as long as either.
struct Progress {
  std::mutex mutex;
  std::condition_variable ended;
  bool hasEnded = false;
  std::exception_ptr failure;
};

void Work(const std::shared_ptr<Progress>& progress, const std::function<void()>& work) {
  std::exception_ptr failure;
  try {
    work();
  } catch (...) {
    failure = std::current_exception();
  }
  const std::lock_guard lock(progress->mutex);
  progress->failure = failure;
  progress->hasEnded = true;
  progress->ended.notify_all();
}

bool HasEnded(Progress& progress, const WatchManners& manners) {
  std::unique_lock lock(progress.mutex);
  return progress.ended.wait_for(lock, manners.betweenLooks, [&] { return progress.hasEnded; });
}

}  // namespace

bool RunWatched(std::function<void()> work, const WatchManners& manners) {
  const auto progress = std::make_shared<Progress>();
  std::thread thread([progress, work = std::move(work)] { Work(progress, work); });
  std::uint32_t looks = 0;  // since the interrupt
  while (!HasEnded(*progress, manners)) {
    manners.tick();
    if (!manners.isInterrupted()) continue;
    if (++looks == 1) manners.whenInterrupted();
    if (looks < manners.patience) continue;
    thread.detach();
    return false;
  }
  thread.join();
  if (progress->failure) std::rethrow_exception(progress->failure);
  return true;
}

}  // namespace pmscan
