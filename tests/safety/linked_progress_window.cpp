#include <utility>

#include "platform/native.h"
#include "tests/safety/progress_window.h"

namespace pmddb832::tests {
namespace {

std::function<void()> currentPaint;

}  // namespace

ProgressWindow::ProgressWindow(std::function<void()> paint) : handle_(&currentPaint) {
  currentPaint = std::move(paint);
  platform::Native().onRepaint = [](void* /*window*/) { currentPaint(); };
}

ProgressWindow::~ProgressWindow() {
  platform::Native().onRepaint = nullptr;
}

}  // namespace pmddb832::tests
