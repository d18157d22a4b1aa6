#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

// The control flow guard of the built DLL, enforced as Windows does it and Wine does not: each call
// of the DLL through a pointer is looked up in the table of the file that the pointer leads into.

namespace pmddb832::tests {

// Looks up the calls of a loaded library from now on. A call of anything else than a function of
// the tables ends the program, unless a WrongCalls lives. Does nothing for a library that was built
// without the guard.
void GuardCalls(void* library);

// Calls that were looked up so far.
std::size_t GuardedCalls();

// Collects wrong calls while it lives. They fail as those of a COM interface do, with E_FAIL.
class WrongCalls {
 public:
  WrongCalls();
  ~WrongCalls();
  WrongCalls(const WrongCalls&) = delete;
  WrongCalls& operator=(const WrongCalls&) = delete;

  std::vector<std::uintptr_t> targets;
};

// The value that guards the stack of a loaded library.
std::uint64_t SecurityCookieOf(void* library);

}  // namespace pmddb832::tests
