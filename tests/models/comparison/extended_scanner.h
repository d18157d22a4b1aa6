#pragma once

#include "tests/models/comparison/scanner.h"

namespace pmddb832::models {

// A scanner that answers FS commands: an identity that stays, conditions and blocks that change.
class ExtendedScanner final : public Scanner {
 public:
  ExtendedScanner(Random& random, const Manners& manners);

 private:
  void Answer(std::uint8_t prefix, char letter) override;
  void ReplyStatus();
  void StartTransfer();
  std::uint32_t RawLineBytes() const;

  std::array<std::uint8_t, 80> identity_{};
  std::uint8_t feeder_ = 0, transparencyUnit_ = 0;
  bool troubled_ = false;  // a block of the transfer tells of an error
};

}  // namespace pmddb832::models
