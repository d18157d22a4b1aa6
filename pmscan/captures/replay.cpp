#include "pmscan/captures/replay.h"

#include <algorithm>
#include <utility>

#include "capture/decode/decode_calls.h"
#include "capture/file/capture_writer.h"
#include "capture/file/settings_text.h"
#include "pmscan/captures/call_values.h"
#include "pmscan/command_line/failure.h"
#include "pmscan/report/error_codes.h"

namespace pmscan {
namespace {

using capture::CallBegin;
using capture::CallEnd;
using capture::LineOf;
using capture::SettingsChange;

bool HasTrouble(const std::vector<capture::FieldRow>& results) {
  return std::any_of(results.begin(), results.end(),
                     [](const capture::FieldRow& row) { return row.isTrouble; });
}

}  // namespace

Replay::Replay(const capture::Capture& playedCapture, std::string captureFile,
               capture::DifferenceLog& differences, PictureTaker* pictureTaker)
    : capture_(playedCapture),
      file_(std::move(captureFile)),
      log_(differences),
      pictures_(pictureTaker),
      device_(playedCapture, differences) {
  settings_.deviceInterface = &device_;
}

void Replay::Run(const ModuleExports& module) {
  RequireCalls();
  CallSurroundings host{module, settings_, {}};
  for (std::size_t i = 0; i < capture_.entries.size() && !log_.IsOver(); ++i) {
    if (const auto* const change = std::get_if<SettingsChange>(&capture_.entries[i])) {
      capture::Apply(*change, settings_);
      capture::Apply(*change, expectedSettings_);
    }
    if (!std::holds_alternative<CallBegin>(capture_.entries[i])) continue;
    const std::size_t end = EndOfCall(i);
    MakeCall(host, i, end);
    i = end;
    behindCalls_ = std::min(end + 1, capture_.entries.size());
  }
}

void Replay::RequireCalls() const {
  const auto isCall = [](const capture::Entry& entry) {
    return std::holds_alternative<CallBegin>(entry);
  };
  if (std::any_of(capture_.entries.begin(), capture_.entries.end(), isCall)) return;
  throw Failure(kCaptureUnreadable,
                file_ +
                    " holds no calls of a host, as an imported one: there is nothing to replay. "
                    "Scan with its scanner: pmscan scan -o FILE --device capture:" +
                    file_);
}

// The entry of the call's return; the end of the capture when it has none.
std::size_t Replay::EndOfCall(std::size_t begin) const {
  for (std::size_t i = begin + 1; i < capture_.entries.size(); ++i) {
    if (std::holds_alternative<CallEnd>(capture_.entries[i])) return i;
  }
  return capture_.entries.size();
}

void Replay::MakeCall(CallSurroundings& host, std::size_t begin, std::size_t end) {
  const auto& call = std::get<CallBegin>(capture_.entries[begin]);
  const capture::ExportRow& known = KnownCall(call, begin);
  device_.BeginCall(call.name, begin + 1, end);
  const CallOutcome outcome = CallModule(known, host, call.arguments);
  device_.EndCall();
  ++calls_;
  CountLines(call, outcome);
  endsInCall_ = end == capture_.entries.size() && !log_.IsOver();
  if (!endsInCall_ && !log_.IsOver()) {
    CompareSettings(begin + 1, end, call.name);
    Compare(outcome, end);
    TakePicture(host, call, outcome);
  }
  Tell(call, outcome, end, host.module);
}

void Replay::CountLines(const CallBegin& call, const CallOutcome& outcome) {
  const std::vector<capture::Value>& results = outcome.results;
  if (call.name == "PMInitAcquire") {
    summary_.height = ValueOf(results, "heightLines");
    summary_.lines = 0;
  } else if (call.name == "PMAcquireImage" && outcome.imageChecksum.has_value()) {
    summary_.lines += ValueOf(results, "lines");
  }
}

// The host may ask for the error next, and the module forgets what it told.
bool Replay::HostAsksNext(std::size_t end) const {
  for (std::size_t i = end; i < capture_.entries.size(); ++i) {
    const auto* const call = std::get_if<CallBegin>(&capture_.entries[i]);
    if (call != nullptr) return call->name == "PMGetScanError";
  }
  return false;
}

void Replay::Tell(const CallBegin& call, const CallOutcome& outcome, std::size_t end,
                  const ModuleExports& module) {
  std::optional<ModuleAnswer>& answer = summary_.answer;
  if (log_.All().empty()) return;
  if (hasFailed_) {
    const bool isAsked = call.name == "PMGetScanError" && !answer->error.has_value();
    if (isAsked) answer->error = ValueOf(outcome.results, "result");
    return;
  }
  answer = {call.name, capture::DescribeResults({call.name, outcome.results, {}, 0}), {}};
  hasFailed_ = HasTrouble(answer->results);
  const bool mustAsk = hasFailed_ && (log_.IsOver() || !HostAsksNext(end));
  if (mustAsk) answer->error = module.getScanError();
}

const capture::ExportRow& Replay::KnownCall(const CallBegin& call, std::size_t entry) const {
  const std::string place = file_ + ", line " + std::to_string(LineOf(capture_, entry)) + ": ";
  const capture::ExportRow* const known = capture::ExportOf(call.name);
  if (known == nullptr) {
    throw Failure(kCaptureUnreadable, place + "the module has no export " + call.name + ".");
  }
  for (const capture::Value& argument : call.arguments) {
    const auto isIt = [&](const capture::ValueShape& one) { return one.name == argument.name; };
    if (std::any_of(known->arguments.begin(), known->arguments.end(), isIt)) continue;
    throw Failure(kCaptureUnreadable,
                  place + call.name + " has no argument " + argument.name + ".");
  }
  if (ValueOf(call.arguments, "bufferBytes") <= kMostBufferBytes) return *known;
  throw Failure(kCaptureUnreadable,
                place + "bufferBytes is more than " + std::to_string(kMostBufferBytes) + ".");
}

void Replay::Compare(const CallOutcome& outcome, std::size_t entry) {
  const auto& expected = std::get<CallEnd>(capture_.entries[entry]);
  CompareResults(expected, outcome, entry);
  CompareChecksum(expected, outcome, entry);
}

// A result that the capture does not tell is not compared.
void Replay::CompareResults(const CallEnd& expected, const CallOutcome& outcome,
                            std::size_t entry) {
  const bool isSame = std::all_of(expected.results.begin(), expected.results.end(),
                                  [&](const capture::Value& value) {
                                    const auto& came = outcome.results;
                                    return std::find(came.begin(), came.end(), value) != came.end();
                                  });
  if (isSame || log_.IsOver()) return;
  log_.Add({LineOf(capture_, entry), expected.name,
            capture::EntryText(CallEnd{expected.name, expected.results, std::nullopt, 0}),
            capture::EntryText(CallEnd{expected.name, outcome.results, std::nullopt, 0}), ""});
}

void Replay::CompareChecksum(const CallEnd& expected, const CallOutcome& outcome,
                             std::size_t entry) {
  if (log_.IsOver() || device_.HasInvented() || !expected.imageChecksum.has_value()) return;
  ++checksums_;
  if (expected.imageChecksum == outcome.imageChecksum) return;
  log_.Add({LineOf(capture_, entry), expected.name,
            capture::EntryText(CallEnd{expected.name, {}, expected.imageChecksum, 0}),
            capture::EntryText(CallEnd{expected.name, {}, outcome.imageChecksum, 0}),
            "the lines of the picture are not the same\n"});
}

void Replay::CompareSettings(std::size_t begin, std::size_t end, const std::string& call) {
  for (std::size_t i = begin; i < end; ++i) {
    const auto* const change = std::get_if<SettingsChange>(&capture_.entries[i]);
    if (change != nullptr) capture::Apply(*change, expectedSettings_);
  }
  const std::vector<SettingsChange> wanted = capture::Compare(settings_, expectedSettings_, true);
  const std::vector<SettingsChange> came = capture::Compare(expectedSettings_, settings_, true);
  for (std::size_t i = 0; i < wanted.size() && !log_.IsOver(); ++i) {
    log_.Add({LineOf(capture_, end), call, capture::EntryText(wanted[i]),
              capture::EntryText(came[i]), ""});
    capture::Apply(came[i], expectedSettings_);
  }
}

void Replay::TakePicture(const CallSurroundings& host, const CallBegin& call,
                         const CallOutcome& outcome) {
  if (pictures_ == nullptr || log_.IsOver()) return;
  if (call.name == "PMInitAcquire") pictures_->Begin(settings_, call.arguments, outcome.results);
  if (call.name == "PMAcquireImage" && outcome.imageChecksum.has_value()) {
    pictures_->TakeBand(host.rows, outcome.results);
  }
}

void Replay::BeginUnload() {
  if (!log_.IsOver()) device_.BeginCall("", behindCalls_, capture_.entries.size());
}

void Replay::Finish() {
  device_.EndCall();
}

ReplaySummary Replay::Summary() const {
  ReplaySummary summary = summary_;
  summary.calls = calls_;
  summary.transfers = device_.Transfers();
  summary.bands = checksums_;
  summary.isPictureInvented = device_.HasInvented();
  summary.endsInCall = endsInCall_;
  summary.differences = log_.All().size();
  return summary;
}

}  // namespace pmscan
