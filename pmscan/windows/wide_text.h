#pragma once

#include <string>

// Texts as Windows has them, from UTF-8 and back.
namespace pmscan {

std::wstring ToWide(const std::string& utf8);
std::string ToUtf8(const wchar_t* wide);

}  // namespace pmscan
