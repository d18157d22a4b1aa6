#define WIN32_LEAN_AND_MEAN
#include "pmsim/system_text.h"

#include <windows.h>

#include <algorithm>
#include <cwchar>

#include "pmsim/device_request.h"

namespace pmsim {

std::string Utf8Of(const wchar_t* text, std::size_t limit, const char* what) {
  if (text == nullptr) return {};
  const std::size_t length = wcsnlen(text, limit);
  if (length == limit) {
    throw RequestError(std::string(what) + ": expected at most " + std::to_string(limit - 1) +
                       " characters with a zero behind them, there is none");
  }
  if (length == 0) return {};
  const int characters = static_cast<int>(length);
  const int bytes = WideCharToMultiByte(CP_UTF8, WC_ERR_INVALID_CHARS, text, characters, nullptr, 0,
                                        nullptr, nullptr);
  if (bytes == 0) {
    throw RequestError(std::string(what) + ": expected UTF-16, there is half of a letter in it");
  }
  std::string utf8(static_cast<std::size_t>(bytes), '\0');
  WideCharToMultiByte(CP_UTF8, 0, text, characters, utf8.data(), bytes, nullptr, nullptr);
  return utf8;
}

void StoreText(const std::string& text, wchar_t* place, std::size_t limit) {
  const int bytes = static_cast<int>(text.size());
  const int length = MultiByteToWideChar(CP_UTF8, 0, text.data(), bytes, nullptr, 0);
  std::wstring wide(static_cast<std::size_t>(length), L'\0');
  MultiByteToWideChar(CP_UTF8, 0, text.data(), bytes, wide.data(), length);
  std::size_t kept = std::min(wide.size(), limit - 1);
  const bool isCut = kept < wide.size();
  if (isCut && kept > 0 && IS_HIGH_SURROGATE(wide[kept - 1])) --kept;
  std::copy_n(wide.begin(), kept, place);
  place[kept] = L'\0';
}

}  // namespace pmsim
