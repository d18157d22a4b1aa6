#define WIN32_LEAN_AND_MEAN
#include <windows.h>

#include <stdexcept>
#include <utility>

#include "tests/safety/progress_window.h"

namespace pmddb832::tests {
namespace {

constexpr char kClassName[] = "pmddb832 progress";

std::function<void()> currentPaint;

LRESULT CALLBACK WindowProcedure(HWND window, UINT message, WPARAM first, LPARAM second) {
  if (message != WM_PAINT) return DefWindowProcA(window, message, first, second);
  ValidateRect(window, nullptr);
  currentPaint();
  return 0;
}

void RegisterWindowClass() {
  WNDCLASSA windowClass{};
  windowClass.lpfnWndProc = WindowProcedure;
  windowClass.hInstance = GetModuleHandleA(nullptr);
  windowClass.lpszClassName = kClassName;
  RegisterClassA(&windowClass);  // fails from the second window on: it is registered then
}

}  // namespace

ProgressWindow::ProgressWindow(std::function<void()> paint) {
  currentPaint = [] {};
  RegisterWindowClass();
  HWND window = CreateWindowA(kClassName, "", WS_POPUP | WS_VISIBLE, 0, 0, 50, 50, nullptr, nullptr,
                              GetModuleHandleA(nullptr), nullptr);
  if (window == nullptr) throw std::runtime_error("there is no desktop for a window");
  UpdateWindow(window);
  handle_ = window;
  currentPaint = std::move(paint);
}

ProgressWindow::~ProgressWindow() {
  DestroyWindow(static_cast<HWND>(handle_));
}

}  // namespace pmddb832::tests
