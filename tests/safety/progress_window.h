#pragma once

#include <functional>

namespace pmddb832::tests {

// The host's window for ScannerSettings::progressWindow. Its painting runs `paint`: natively out of
// the platform's stand-in, on Windows out of the procedure of a real window. One at a time.
class ProgressWindow {
 public:
  explicit ProgressWindow(std::function<void()> paint);
  ~ProgressWindow();
  ProgressWindow(const ProgressWindow&) = delete;
  ProgressWindow& operator=(const ProgressWindow&) = delete;

  void* Handle() const { return handle_; }

 private:
  void* handle_;
};

}  // namespace pmddb832::tests
