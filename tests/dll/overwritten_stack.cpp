// Writes as many bytes beyond an array on the stack as its argument is long, and returns.

#include <cstdio>
#include <cstring>

namespace {

[[gnu::noinline]] void CopyWithoutLimit(const char* text) {
  char copy[8];
  std::strcpy(copy, text);
  std::puts(copy);
}

}  // namespace

int main(int count, char** arguments) {
  CopyWithoutLimit(count > 1 ? arguments[1] : "");
  return 0;
}
