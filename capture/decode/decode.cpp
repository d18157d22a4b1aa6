#include "capture/decode/decode.h"

#include <variant>

#include "capture/decode/decode_calls.h"
#include "capture/decode/decode_commands.h"
#include "capture/decode/decode_narrator.h"
#include "capture/decode/decode_page.h"
#include "capture/decode/decode_replies.h"

namespace capture {
namespace {

using Bytes = std::span<const std::uint8_t>;

std::string BytesText(Bytes bytes) {
  return Counted(bytes.size(), "byte") + " " + HexText(bytes);
}

// Puts the entries of a capture together into the calls that they belong to.
class StoryTeller {
 public:
  explicit StoryTeller(const Capture& told) : capture_(told) {}

  std::vector<CallStory> Tell() {
    for (entry_ = 0; entry_ < capture_.entries.size(); ++entry_) {
      std::visit([this](const auto& item) { Take(item); }, capture_.entries[entry_]);
    }
    Close();
    return calls_;
  }

 private:
  void Take(const CallBegin& call) {
    Close();
    const std::string arguments = DescribeArguments(call);
    story_.heading = call.name + (arguments.empty() ? "" : ", " + arguments);
    story_.microseconds = call.microseconds;
    story_.settingsByHost = DescribeChanges(byHost_);
    byHost_.clear();
    isEmpty_ = false;
  }

  void Take(const RecordChange& change) {
    (change.byModule ? byModule_ : byHost_).push_back(change);
  }

  void Take(const Transfer& transfer) {
    if (isEmpty_) story_.microseconds = transfer.microseconds;
    isEmpty_ = false;
    narrator_.Take(transfer, LineOf(capture_, entry_));
  }

  void Take(const CallEnd& call) {
    const std::vector<FieldRow> results = DescribeResults(call);
    story_.results = Joined(results);
    for (const FieldRow& row : results) story_.failed = story_.failed || row.isTrouble;
    story_.settingsByModule = DescribeChanges(byModule_);
    story_.isOpen = false;
    byModule_.clear();
    Close();
  }

  void Close() {
    story_.exchanges = narrator_.Release();
    if (!isEmpty_) calls_.push_back(story_);
    story_ = {};
    isEmpty_ = true;
  }

  const Capture& capture_;
  std::size_t entry_ = 0;
  Narrator narrator_;
  std::vector<RecordChange> byHost_;
  std::vector<RecordChange> byModule_;
  CallStory story_;
  bool isEmpty_ = true;
  std::vector<CallStory> calls_;
};

}  // namespace

std::string Decode(const Capture& capture) {
  return LayOut(StoryTeller(capture).Tell());
}

std::string DescribeWrite(Bytes bytes) {
  if (const pmddb832::CommandShape* const row = pmddb832::FindCommand(bytes); row != nullptr) {
    return NameOf(*row);
  }
  if (bytes.size() == 1) {
    if (const auto name = ControlName(bytes[0]); name.has_value()) return *name;
  }
  if (bytes.size() == sizeof(pmddb832::ParameterBlock)) {
    return "parameters: " + Joined(DescribeFields(pmddb832::parameter::kFields, bytes));
  }
  return BytesText(bytes);
}

std::string DescribeWrite(Bytes command, Bytes bytes) {
  const pmddb832::CommandShape* const row = pmddb832::FindCommand(command);
  const bool fits =
      row != nullptr && row->parameterBytes != 0 && bytes.size() == row->parameterBytes;
  if (!fits) return DescribeWrite(bytes);
  const std::vector<FieldRow> rows = DescribeParameters(*row, bytes);
  const std::string values = rows.size() == 1 ? rows.front().value : Joined(rows);
  return DescribeWrite(command) + ": " + values;
}

std::string DescribeReply(Bytes command, Bytes reply) {
  const pmddb832::CommandShape* const row = pmddb832::FindCommand(command);
  const std::string fields = row == nullptr ? "" : Joined(DescribeReply(row->reply, reply));
  return fields.empty() ? BytesText(reply) : fields;
}

}  // namespace capture
