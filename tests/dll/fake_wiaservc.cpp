// Stands in for the image acquisition service's library where the real one cannot format: the one
// function that the module imports from it.

#define WIN32_LEAN_AND_MEAN
#include <windows.h>
#include <oleauto.h>

#include <array>
#include <cstdarg>
#include <cstdio>

extern "C" __declspec(dllexport) BSTR wiasFormatArgs(const char* format, ...) {
  std::array<char, 512> text{};
  std::va_list arguments;
  va_start(arguments, format);
  std::vsnprintf(text.data(), text.size(), format, arguments);
  va_end(arguments);
  std::array<wchar_t, 512> wide{};
  MultiByteToWideChar(CP_ACP, 0, text.data(), -1, wide.data(), static_cast<int>(wide.size()));
  return SysAllocString(wide.data());
}
