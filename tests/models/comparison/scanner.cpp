#include "tests/models/comparison/scanner.h"

#include <algorithm>

namespace pmddb832::models {

bool Scanner::Take(const Bytes& sent) {
  if (random_.OneIn(manners_.fault)) gone_ |= random_.OneIn(10);
  if (gone_ || random_.OneIn(2 * manners_.fault)) return false;
  if (sent.size() == 2 && (sent[0] == 0x1B || sent[0] == 0x1C)) {
    replies_.clear();
    expected_ = 0;
    Answer(sent[0], static_cast<char>(sent[1]));
  } else if (expected_ != 0) {
    parameters_[expected_] = sent;
    expected_ = 0;
    Ack();
  } else {
    TakeControl(sent[0]);
  }
  return true;
}

void Scanner::TakeControl(std::uint8_t control) {
  if (control == 0x06) return;
  if (control == 0x18) BeginImage({});
  replies_.clear();
  Ack();
}

bool Scanner::Give(std::uint32_t length, Bytes& delivered) {
  if (gone_) return false;
  if (!replies_.empty()) {
    if (replies_.size() < length) return false;
    const auto end = replies_.begin() + static_cast<std::ptrdiff_t>(length);
    delivered.assign(replies_.begin(), end);
    replies_.erase(replies_.begin(), end);
  } else {
    if (image_.size() - imageGiven_ < length) return false;
    const auto from = image_.begin() + static_cast<std::ptrdiff_t>(imageGiven_);
    delivered.assign(from, from + static_cast<std::ptrdiff_t>(length));
    imageGiven_ += length;
  }
  if (!random_.OneIn(manners_.fault)) return true;
  const std::uint32_t kind = random_.Below(5);
  if (kind == 0) delivered.clear();
  if (kind >= 2) Garble(delivered);
  return kind >= 2;  // a read may fail although it filled the buffer
}

void Scanner::Garble(Bytes& delivered) {
  if (delivered.empty()) return;
  const auto count = static_cast<std::uint32_t>(delivered.size());
  switch (random_.Below(4)) {
    case 0:
      delivered.resize(random_.Below(count));
      return;  // short, and still a success
    case 1:
      delivered[0] = random_.Pick<std::uint8_t>({0x15, 0x00, 0x06, 0x02, 0xFF});
      return;
    default:
      delivered[random_.Below(count)] = random_.Byte();
      return;
  }
}

void Scanner::ReplyWithHeader(std::uint8_t status, const Bytes& data) {
  const std::size_t count = data.size();
  Reply({IsOdd() && random_.OneIn(3) ? std::uint8_t{0x15} : std::uint8_t{0x02}, status, Low8(count),
         Low8(count >> 8)});
  Reply(data);
}

void Scanner::ReplyToLevelQuery(std::uint8_t status) {
  Bytes data{level_[0], level_[1]};
  if (IsOdd()) data = Noise(random_.Pick({0u, 1u, 150u, 151u, 400u, 0x8000u, 0xFFFFu}));
  ReplyWithHeader(IsOdd() ? random_.Byte() : status, data);
}

void Scanner::ReplyToFocusQuery() {
  Bytes data{Low8(random_.OneIn(5)), random_.Byte()};
  if (IsOdd()) data = Noise(random_.Pick({0u, 1u, 3u, 150u, 151u, 0xFFFFu}));
  ReplyWithHeader(0, data);
}

void Scanner::AckAndExpectParameters(char letter) {
  Ack();
  expected_ = letter;
}

void Scanner::Ack() {
  Reply({IsOdd() && random_.OneIn(3) ? random_.Byte() : std::uint8_t{0x06}});
}

Bytes Scanner::Noise(std::size_t count) {
  Bytes bytes(count + 8);
  for (std::size_t i = 0; i < count; i += 8) {
    const std::uint64_t noise = random_.Next();
    for (unsigned byte = 0; byte < 8; ++byte) bytes[i + byte] = Low8(noise >> 8 * byte);
  }
  bytes.resize(count);
  return bytes;
}

// 16 characters; some are padded with zeros, or cut short by one.
std::string Scanner::ProductName() {
  std::string name =
      random_.Pick({"SCANNER RV-3000 ", "SCANNER QM-43000", "Prospectra936XL ", "SCANNER QM-2700 ",
                    "Prospectra900   ", "SCANNER RV-5000 ", "Prospectra3100  ", "SCANNER RV-7000 ",
                    "RV-700XL        ", "SCANNER QM-41000", "SCANNER RV-3100 ", "Prospectra3140XL",
                    "Someone's own   ", "", "Ab"});
  while (random_.OneIn(2) && !name.empty() && name.back() == ' ') name.pop_back();
  name.resize(16, '\0');
  if (random_.OneIn(20)) name[random_.Below(16)] = '\0';
  return name;
}

void Scanner::BeginImage(Bytes image) {
  image_ = std::move(image);
  imageGiven_ = 0;
}

}  // namespace pmddb832::models
