#pragma once

#include <string>
#include <vector>

#include "capture/file/capture.h"

namespace pmddb832::tests {

// What tshark with our dissector tells of a conversation: of each packet the named fields, those of
// one that occurs several times with commas between them. Throws std::runtime_error that says what
// to install when there is no tshark, and what it said when it fails.
class Dissection {
 public:
  Dissection(const capture::Capture& capture, const std::vector<std::string>& fields,
             const std::string& preference = {});

  // The same of the bytes of a capture file of any kind.
  Dissection(const std::vector<std::uint8_t>& file, const std::vector<std::string>& fields,
             const std::string& preference = {});

  // Fields of the packet, counted from 1, with "|" between them.
  std::string Packet(std::size_t number) const { return lines_.at(number - 1); }
  std::size_t Packets() const { return lines_.size(); }

 private:
  std::vector<std::string> lines_;
};

// The capture as a file of a bus, whose packets need not be the transfers of the host.
std::vector<std::uint8_t> BusTrace(const capture::Capture& capture);

// The packets' one-line summaries.
Dissection Summaries(const capture::Capture& capture);

}  // namespace pmddb832::tests
