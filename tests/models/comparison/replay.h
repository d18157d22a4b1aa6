#pragma once

#include <string>
#include <vector>

#include "tests/models/wire.h"
#include "transport/raw_device.h"

namespace pmddb832::models {

// The host's device and the rest of the host's side, for the module: everything has to happen as
// the model said, event by event. The first one that does not is told, and nothing succeeds
// behind it.
class Replay final : public RawDevice {
 public:
  // In front of a call; `events` are what the call is to do.
  void Begin(const std::vector<Event>& events);
  // Behind it: empty when all happened, else what did not.
  std::string Verdict();
  // The last events that happened as expected.
  std::string LastEvents() const;

  void Progress(std::uint32_t percent) { Expect(Event::Kind::kProgress, percent, {}); }
  void Repaint() { Expect(Event::Kind::kRepaint, 0, {}); }
  std::int32_t RawReadData(void* buffer, std::uint32_t* byteCount, void* overlapped) override;
  std::int32_t RawWriteData(void* buffer, std::uint32_t byteCount, void* overlapped) override;

 private:
  void Called(const char* entry) override { Complain(std::string("a call of ") + entry); }
  // The event that is due, when it is this one; else null.
  const Event* Expect(Event::Kind kind, std::uint32_t value, const Bytes& sent);
  void ExpectSleep();
  void Complain(const std::string& actual);

  const std::vector<Event>* events_ = nullptr;
  std::size_t next_ = 0;
  std::uint64_t slept_ = 0;
  std::string complaint_;
};

// "write of 2: 1B 49", long runs of bytes shortened.
std::string Describe(const Event& event);
// Where two runs of bytes differ first, and both bytes; empty when they do not.
std::string FirstDifference(std::span<const std::uint8_t> expected,
                            std::span<const std::uint8_t> actual);

}  // namespace pmddb832::models
