#pragma once

#include <string>
#include <vector>

#include "capture/conversation/conversation.h"
#include "capture/file/capture.h"

namespace documents {

// A command with all that belongs to it, or a block of a picture with its header and its answer.
struct Exchange {
  std::string command;  // "FS I"; empty for a block
  std::string words;    // what was said
  // What went over the wire, "> " to the scanner, "< " from it.
  std::vector<std::string> transfers;
};

// Puts the transfers of a conversation together.
class ExchangeReader {
 public:
  void Take(const capture::Transfer& transfer);
  // The exchanges since the last call.
  std::vector<Exchange> Release();

 private:
  void Begin(capture::Part part, const capture::Transfer& transfer);
  void Tell(capture::Part part, const capture::Transfer& transfer);

  capture::Conversation conversation_;
  std::vector<Exchange> exchanges_;
  bool isHeaderOpen_ = false;  // a block's header came, and not the block
};

// As lines of at most 100 columns.
std::vector<std::string> LinesOf(const Exchange& exchange);

}  // namespace documents
