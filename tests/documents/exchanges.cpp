#include "tests/documents/exchanges.h"

#include <algorithm>
#include <variant>

#include "capture/file/capture_writer.h"
#include "tests/documents/document.h"
#include "tests/documents/exchange_text.h"

namespace documents {
namespace {

using Lines = std::vector<std::string>;

void Append(Lines& lines, const Lines& more) {
  lines.insert(lines.end(), more.begin(), more.end());
}

// What a call's lines are, and which of them begins which command.
struct CallText {
  std::string name;
  Lines begin;
  std::vector<Exchange> exchanges;
  Lines end;
};

std::vector<CallText> CallsOf(const capture::Capture& capture) {
  std::vector<CallText> calls;
  ExchangeReader reader;
  for (const capture::Entry& entry : capture.entries) {
    if (const auto* call = std::get_if<capture::CallBegin>(&entry)) {
      calls.push_back({call->name, {capture::EntryText(entry)}, {}, {}});
    } else if (const auto* transfer = std::get_if<capture::Transfer>(&entry)) {
      reader.Take(*transfer);
    } else if (std::holds_alternative<capture::CallEnd>(entry)) {
      calls.back().exchanges = reader.Release();
      calls.back().end = {capture::EntryText(entry)};
    }
  }
  return calls;
}

Lines WholeCall(const CallText& call) {
  Lines lines = call.begin;
  for (const Exchange& exchange : call.exchanges) Append(lines, LinesOf(exchange));
  Append(lines, call.end);
  return lines;
}

// The exchanges from the command on; nothing when it is not in the call.
Lines FromCommand(const CallText& call, const std::string& command, bool goesOn) {
  Lines lines;
  for (const Exchange& exchange : call.exchanges) {
    if (lines.empty() && exchange.command != command) continue;
    if (!lines.empty() && !goesOn) break;
    Append(lines, LinesOf(exchange));
  }
  if (!lines.empty() && goesOn) Append(lines, call.end);
  return lines;
}

// The calls from that one on, or it alone; nothing when there is no such call.
Lines FromCall(const std::vector<CallText>& calls, const std::string& name, bool goesOn) {
  Lines lines;
  for (const CallText& call : calls) {
    if (lines.empty() && call.name != name) continue;
    if (!lines.empty() && !goesOn) break;
    Append(lines, WholeCall(call));
  }
  return lines;
}

Lines Choose(const std::vector<CallText>& calls, std::string part) {
  const bool goesOn = part.ends_with(" ...");
  if (goesOn) part.resize(part.size() - 4);
  if (Lines lines = FromCall(calls, part, goesOn); !lines.empty()) return lines;
  for (const CallText& call : calls) {
    if (Lines lines = FromCommand(call, part, goesOn); !lines.empty()) return lines;
  }
  throw DocumentError("nothing in the scene is called \"" + part + "\"");
}

}  // namespace

const capture::Capture& Exchanges::Played(const std::string& scene) {
  if (const auto known = played_.find(scene); known != played_.end()) return known->second;
  const auto scenes = Scenes();
  const auto found = std::find_if(scenes.begin(), scenes.end(),
                                  [&](const Scene& row) { return row.name == scene; });
  if (found == scenes.end()) throw DocumentError("no scene is called \"" + scene + "\"");
  return played_[scene] = Play(*found);
}

Lines Exchanges::Tell(const std::string& choice) {
  const std::string between = " / ";
  const std::size_t cut = choice.find(between);
  const std::vector<CallText> calls = CallsOf(Played(choice.substr(0, cut)));
  if (cut != std::string::npos) return Choose(calls, choice.substr(cut + between.size()));
  Lines lines;
  for (const CallText& call : calls) Append(lines, WholeCall(call));
  return lines;
}

Lines Exchanges::Untold() const {
  Lines untold;
  for (const Scene& scene : Scenes()) {
    if (!played_.contains(std::string(scene.name))) untold.emplace_back(scene.name);
  }
  return untold;
}

}  // namespace documents
