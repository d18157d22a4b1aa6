#pragma once

#include <vector>

#include "tests/models/comparison/scanner.h"

namespace pmddb832::models {

// A scanner that answers ESC commands only.
class StandardScanner final : public Scanner {
 public:
  StandardScanner(Random& random, const Manners& manners);

 private:
  void Answer(std::uint8_t prefix, char letter) override;
  void ReplyIdentity();
  void ReplyProduct();
  void ReplyStatus();
  void StartTransfer();
  std::uint32_t RawLineBytes() const;
  Bytes Blocks(std::uint32_t linesPerBlock, bool counted);

  std::vector<std::uint16_t> resolutions_;
  std::uint16_t width_, height_;
  std::string name_;
  Bytes status_;
  bool refused_ = false;
};

}  // namespace pmddb832::models
