#include "capture/decode/decode.h"

#include <variant>

#include "capture/decode/decode_calls.h"
#include "capture/decode/decode_narrator.h"
#include "capture/decode/decode_page.h"

namespace capture {
namespace {

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

  void Take(const SettingsChange& change) {
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
  std::vector<SettingsChange> byHost_;
  std::vector<SettingsChange> byModule_;
  CallStory story_;
  bool isEmpty_ = true;
  std::vector<CallStory> calls_;
};

}  // namespace

std::string Decode(const Capture& capture) {
  return LayOut(TellCalls(capture));
}

std::vector<CallStory> TellCalls(const Capture& capture) {
  return StoryTeller(capture).Tell();
}

}  // namespace capture
