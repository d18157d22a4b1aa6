#define WIN32_LEAN_AND_MEAN
#include "pmscan/windows/wide_text.h"

#include <windows.h>

namespace pmscan {

std::string ToUtf8(const wchar_t* wide) {
  const int bytes = WideCharToMultiByte(CP_UTF8, 0, wide, -1, nullptr, 0, nullptr, nullptr);
  std::string utf8(static_cast<std::size_t>(bytes), '\0');
  WideCharToMultiByte(CP_UTF8, 0, wide, -1, utf8.data(), bytes, nullptr, nullptr);
  utf8.resize(utf8.size() - 1);  // the terminating zero
  return utf8;
}

std::wstring ToWide(const std::string& utf8) {
  const int bytes = static_cast<int>(utf8.size());
  const int length = MultiByteToWideChar(CP_UTF8, 0, utf8.data(), bytes, nullptr, 0);
  std::wstring wide(static_cast<std::size_t>(length), L'\0');
  MultiByteToWideChar(CP_UTF8, 0, utf8.data(), bytes, wide.data(), length);
  return wide;
}

}  // namespace pmscan
