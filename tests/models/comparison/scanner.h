#pragma once

#include <array>
#include <map>
#include <string>

#include "tests/models/comparison/random.h"
#include "tests/models/wire.h"

namespace pmddb832::models {

// How often a scanner does what it should not, once in so many; 0 is never.
struct Manners {
  std::uint32_t fault = 0;  // a transfer fails, is short or garbled
  std::uint32_t odd = 0;    // a reply tells what is wrong, of errors, or nonsense
};

// A scanner whose every answer follows from a seed.
class Scanner : public Device {
 public:
  Scanner(Random& random, const Manners& manners) : manners_(manners), random_(random) {}

  bool Take(const Bytes& sent) final;
  bool Give(std::uint32_t length, Bytes& delivered) final;
  void Become(const Manners& manners) { manners_ = manners; }

 protected:
  // Replies to a command of a family, or expects its parameters.
  virtual void Answer(std::uint8_t prefix, char letter) = 0;

  void Reply(const Bytes& bytes) { replies_.insert(replies_.end(), bytes.begin(), bytes.end()); }
  // A header of STX, status and count, then the data.
  void ReplyWithHeader(std::uint8_t status, const Bytes& data);
  void ReplyToLevelQuery(std::uint8_t status);
  void ReplyToFocusQuery();
  void AckAndExpectParameters(char letter);
  void Ack();

  Random& Chance() { return random_; }
  bool IsOdd() { return random_.OneIn(manners_.odd); }
  Bytes Noise(std::size_t count);
  std::string ProductName();
  const std::map<char, Bytes>& Parameters() const { return parameters_; }
  // All that the scanner sends of a transfer, from the first block on.
  void BeginImage(Bytes image);

  std::array<std::uint8_t, 2> level_{};

 private:
  void TakeControl(std::uint8_t control);
  void Garble(Bytes& delivered);

  Manners manners_;
  Random& random_;
  Bytes replies_, image_;
  std::size_t imageGiven_ = 0;
  char expected_ = 0;  // the command whose parameters come next
  std::map<char, Bytes> parameters_;
  bool gone_ = false;
};

}  // namespace pmddb832::models
