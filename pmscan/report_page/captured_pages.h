#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

#include "capture/file/capture.h"
#include "wire/command_table.h"

namespace pmscan {

// What the scanner was told of the picture; 0 stands for what it was not told.
struct PictureShape {
  std::uint32_t width = 0;   // pixels
  std::uint32_t height = 0;  // lines
  std::uint32_t dotsPerInch = 0;
  std::uint8_t colorMode = 0;  // as on the wire
  std::uint8_t bits = 0;       // of a sample

  // The command was sent with these parameters. Those that tell of no picture change nothing.
  void Note(const pmddb832::CommandShape& command, std::span<const std::uint8_t> sent);
};

struct CapturedBlock {
  std::uint32_t lines = 0;      // that came whole; 0 also where it is not known
  std::uint64_t bytes = 0;      // that came, without the status behind them
  std::uint64_t lineBytes = 0;  // of each line; 0: not known
  bool hasError = false;        // the scanner said so with it: the host gets none of its lines
  std::size_t entry = 0;        // of the capture
  // The bytes, for as long as the capture lives; empty where it did not keep them.
  std::span<const std::uint8_t> data = {};
};

// One picture that the scanner began to send.
struct CapturedPage {
  PictureShape shape;
  std::uint32_t hostLines = 0;  // that PMInitAcquire told the host; 0 where no call was recorded
  std::vector<CapturedBlock> blocks;
  std::vector<std::uint32_t> bands;  // lines of each call of PMAcquireImage that did not fail
  bool isDone = false;               // the host got the last line

  // That came in the blocks without error.
  std::uint64_t Lines() const;
  // All lines came.
  bool IsWhole() const;
};

// The pictures of the capture in their order. The capture outlives them.
std::vector<CapturedPage> PagesOf(const capture::Capture& capture);

}  // namespace pmscan
