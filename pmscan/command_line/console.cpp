#include "pmscan/command_line/console.h"

#include <array>
#include <cstdio>
#include <iostream>

namespace pmscan {

// Past the buffer of standard output, which others could not use while nobody takes the bytes.
bool WriteStandardOutput(std::istream& stream) {
  FlushOutput();
  std::array<char, 65536> bytes;
  bool isWhole = true;
  while (isWhole && stream) {
    stream.read(bytes.data(), bytes.size());
    isWhole = WriteToOutput({bytes.data(), static_cast<std::size_t>(stream.gcount())});
  }
  return isWhole;
}

// Each output operation of std::cerr flushes what std::cout has, and its own text at its end.
void JoinOutput() {
  constexpr std::size_t kBytes = 4096;
  std::setvbuf(stdout, nullptr, _IOFBF, kBytes);
  std::setvbuf(stderr, nullptr, _IOFBF, kBytes);
}

bool FlushOutput() {
  std::cout << std::flush;
  std::cerr << std::flush;
  std::fflush(stdout);
  std::fflush(stderr);
  return std::cout && std::ferror(stdout) == 0;
}

}  // namespace pmscan
