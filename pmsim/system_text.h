#pragma once

#include <cstddef>
#include <string>

namespace pmsim {

// A text of a host in UTF-8; a null pointer is an empty one. Throws RequestError, which names what
// the text is, when there is no end within `limit` characters, or when it is no UTF-16.
std::string Utf8Of(const wchar_t* text, std::size_t limit, const char* what);

// Stores a text as UTF-16 in `limit` characters, the zero at its end counted; what is too long is
// cut between two letters.
void StoreText(const std::string& text, wchar_t* place, std::size_t limit);

}  // namespace pmsim
