#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>

#include "fuzz/conversation.h"

namespace pmddb832::fuzz {

// A reply as the protocol wants it, and the moment that a fault may lie in wait for.
struct Reply {
  Moment moment = Moment::kAcknowledge;
  std::array<std::uint8_t, 160> bytes{};
  std::size_t size = 0;

  std::span<const std::uint8_t> All() const { return std::span{bytes}.first(size); }
};

// What the host has asked to have scanned, as far as the scanner has to know it.
struct ScanRequest {
  std::uint32_t width = 0;
  std::uint32_t height = 0;
  std::uint32_t linesPerBlock = 1;
  std::uint8_t colorMode = 0;
  std::uint8_t bitsPerSample = 8;

  std::uint32_t LineBytes(Family family) const;
};

void AnswerAcknowledge(Reply& reply);

// The answer to a command letter; an acknowledge where the letter asks for nothing.
void AnswerStandard(const ScannerBlock& scanner, Family family, std::uint8_t letter, Reply& reply);
void AnswerExtended(const ScannerBlock& scanner, const ScanRequest& request, std::uint8_t letter,
                    Reply& reply);

// The lines of a block that is not the last one.
std::uint32_t LinesOfBlock(const ScannerBlock& scanner, const ScanRequest& request);

// The header of a block with `linesLeft` lines to come, those of the block included.
void AnswerBlockHeader(const ScannerBlock& scanner, const ScanRequest& request,
                       std::uint32_t linesLeft, Reply& reply);

// The answer to a start in the standard set: the header of the first block, which follows once more
// where each line is a block.
void AnswerStart(const ScannerBlock& scanner, const ScanRequest& request, Reply& reply);

}  // namespace pmddb832::fuzz
