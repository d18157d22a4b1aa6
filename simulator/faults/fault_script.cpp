#include "simulator/faults/fault_script.h"

#include <algorithm>
#include <array>
#include <limits>

#include "simulator/catalog/json_keys.h"
#include "simulator/faults/fault_parts.h"

namespace simulator {
namespace {

constexpr std::uint32_t kMost = std::numeric_limits<std::int32_t>::max();

// A transfer of a command by a name: so many writes behind the letters, and the read there.
struct PartRow {
  std::string_view name;
  std::uint32_t write;
  std::optional<std::uint32_t> read;
  bool ofBlock;  // counted from the write that asks for the block
};
constexpr std::array kParts{
    PartRow{"command", 0, std::nullopt, false},
    PartRow{"reply", 0, 0, false},
    PartRow{"data", 0, 1, false},
    PartRow{"parameters", 1, std::nullopt, false},
    PartRow{"result", 1, 0, false},
    PartRow{"block", 0, 0, true},
    PartRow{"answer", 1, std::nullopt, true},
};

constexpr ValueKind kNumber = Whole(0, kMost);

// A place as it is written; what belongs together is put together behind the last key.
struct WrittenPlace {
  FaultPlace place;
  const PartRow* part = nullptr;
  const JsonNode* block = nullptr;
  const JsonNode* read = nullptr;
};

bool IsCommand(const JsonNode& value) {
  const auto* const text = std::get_if<std::string>(&value.value);
  if (text == nullptr) return false;
  if (*text == "FF" || *text == "EM" || *text == "CAN") return true;
  const std::size_t letter = text->starts_with("ESC ") ? 4 : 3;
  const bool prefixed = letter == 4 || text->starts_with("FS ");
  return prefixed && text->size() == letter + 1 && (*text)[letter] > ' ' && (*text)[letter] < 0x7F;
}
constexpr ValueKind kCommand{
    ValueKind::Shape::kOther, "a command: FS or ESC, a blank and its letter, or FF, EM or CAN",
    R"({"type": "string", "pattern": "^((FS|ESC) [!-~]|FF|EM|CAN)$"})", &IsCommand};

void ReadOccurrence(const JsonNode& value, WrittenPlace& written) {
  written.place.occurrence.reset();
  if (!IsWord(value, "every")) written.place.occurrence = WholeOf(value);
}

using W = WrittenPlace;
template <auto kMember>
void ReadNumber(const JsonNode& value, W& written) {
  written.place.*kMember = WholeOf(value);
}

constexpr std::array kPlaceRows{
    KeyRow<W>{{"transfer", kNumber, "Reads and writes together, counted from 0."},
              &ReadNumber<&FaultPlace::transfer>},
    KeyRow<W>{{"readFrom", kNumber, "The first read from that transfer on."},
              &ReadNumber<&FaultPlace::readFrom>},
    KeyRow<W>{{"byte", kNumber,
               "The transfer that carries this byte, counted from 0 at the scanner's end, both "
               "directions together."},
              &ReadNumber<&FaultPlace::byte>},
    KeyRow<W>{{"command", kCommand, "FF ejects the page, EM feeds one, CAN cancels."},
              [](const JsonNode& value, W& written) { written.place.command = TextOf(value); }},
    KeyRow<W>{{"occurrence", Whole(1, kMost, "every"),
               "Which time the command is sent, counted from 1; without it the first."},
              &ReadOccurrence},
    KeyRow<W>{
        {"part", Name("a part of the command", &NamesOf<kParts>),
         "Which transfer of the command; without it reply, or block where block or read are "
         "given."},
        [](const JsonNode& value, W& written) { written.part = &RowNamed(kParts, TextOf(value)); }},
    KeyRow<W>{{"block", kNumber,
               "For the parts block and answer: which block of the image, counted from 0; without "
               "it the first."},
              [](const JsonNode& value, W& written) { written.block = &value; }},
    KeyRow<W>{{"read", kNumber,
               "For the part block: which of the driver's reads of the block, counted from 0; "
               "without it the first."},
              [](const JsonNode& value, W& written) { written.read = &value; }},
};
constexpr KeyTable<W> kPlace{"place", "a place", kPlaceRows};

// The first block of an extended scan comes behind the header that answers the command; on a
// standard scanner that answer is the block's own header.
void PlaceInBlocks(const WrittenPlace& written, const PartRow& part, FaultPlace& place) {
  const std::uint32_t block = written.block == nullptr ? 0 : WholeOf(*written.block);
  place.write += block;
  if (written.read != nullptr) {
    if (!part.read) written.read->Fail("the answer to a block is written, not read");
    place.read = WholeOf(*written.read);
  }
  if (place.read && place.command == "FS G" && block == 0) ++*place.read;
}

void RequireOneAddress(const JsonNode& node, const WrittenPlace& written) {
  for (const std::string_view key : {"transfer", "readFrom", "byte"}) {
    if (FindKey(node, key) == nullptr) continue;
    if (MembersOf(node).size() == 1) return;
    node.Fail("its number says it all: no other key can stand beside \"" + std::string(key) + "\"");
  }
  if (written.place.command.empty()) {
    node.Fail(
        "expected \"transfer\", \"readFrom\" or \"byte\" with a number, or \"command\" with a "
        "name");
  }
}

// A place that no driver ever comes to is a mistake of whoever wrote it.
void RequirePossible(const JsonNode& node, const std::string& command, const PartRow& part) {
  if (command.empty()) return;
  if (!IsSent(command)) node.Fail("no driver sends " + command + ", so this cannot strike");
  if (HasPart(command, part.name)) return;
  node.Fail(command + " has no \"" + std::string(part.name) + "\", so this cannot strike");
}

void ReadPlace(const JsonNode& node, Fault& fault) {
  WrittenPlace written;
  ReadObject(node, kPlace, written);
  RequireOneAddress(node, written);
  const bool inBlocks = written.block != nullptr || written.read != nullptr;
  const PartRow& part =
      written.part != nullptr ? *written.part : RowNamed(kParts, inBlocks ? "block" : "reply");
  RequirePossible(node, written.place.command, part);
  written.place.write = part.write;
  written.place.read = part.read;
  if (part.ofBlock) {
    PlaceInBlocks(written, part, written.place);
  } else if (inBlocks) {
    (written.block != nullptr ? written.block : written.read)
        ->Fail("belongs to the parts \"block\" and \"answer\" only");
  }
  fault.at = written.place;
}

void Cut(const JsonNode& value, Fault& fault) {
  const bool isHalf = IsWord(value, "half");
  fault.kind = isHalf ? FaultKind::kHalve : FaultKind::kCut;
  fault.count = isHalf ? 0 : WholeOf(value);
}

void Answer(const JsonNode& value, Fault& fault) {
  fault.kind = FaultKind::kAnswer;
  fault.bytes = *BytesIn(TextOf(value));
}

void Hold(const JsonNode& value, Fault& fault) {
  fault.kind = FaultKind::kHold;
  fault.count = WholeOf(value);
}

constexpr std::array kActionRows{
    KeyRow<Fault>{{"cut", Whole(0, kMost, "half"),
                   "So many bytes pass, or half of them, with success; the rest is lost."},
                  &Cut},
    KeyRow<Fault>{{"answer", kHexDigits, "These bytes pass instead of those that were sent."},
                  &Answer},
    KeyRow<Fault>{
        {"hold", Whole(1, kMost), "So many status replies report that the scanner is warming up."},
        &Hold},
};
constexpr KeyTable<Fault> kAction{"action", "an action", kActionRows};

bool IsAction(const JsonNode& value) {
  return IsWord(value, "fail") || IsWord(value, "unplug") ||
         !std::holds_alternative<std::string>(value.value);
}
constexpr ValueKind kActionKind{
    ValueKind::Shape::kOther,
    "\"fail\", \"unplug\", or an object with one of \"cut\", \"answer\" and \"hold\"",
    R"({"anyOf": [{"enum": ["fail", "unplug"]}, {"$ref": "#/$defs/action"}]})", &IsAction};

void ReadAction(const JsonNode& value, Fault& fault) {
  if (std::holds_alternative<std::string>(value.value)) {
    fault.kind = IsWord(value, "fail") ? FaultKind::kFail : FaultKind::kUnplug;
    return;
  }
  ReadObject(value, kAction, fault);
  if (MembersOf(value).size() != 1) {
    value.Fail("expected exactly one of \"cut\", \"answer\" and \"hold\"");
  }
}

constexpr std::array kFaultRows{
    KeyRow<Fault>{{"description", Text(), "For people."}, &Ignore<Fault>},
    KeyRow<Fault>{{"at", Object(R"({"$ref": "#/$defs/place"})"),
                   "A transfer, by its number or by its command.", true},
                  &ReadPlace},
    KeyRow<Fault>{{"do", kActionKind,
                   "fail: the transfer fails and its bytes are lost. unplug: it and all behind it "
                   "fail.",
                   true},
                  &ReadAction},
};
constexpr KeyTable<Fault> kFault{"fault", "a fault", kFaultRows};

using Faults = std::vector<Fault>;
constexpr std::array kScriptRows{
    KeyRow<Faults>{
        {"$schema", Text(), "The schema, for editors, with #/$defs/faultScript behind it."},
        &Ignore<Faults>},
    KeyRow<Faults>{{"description", Text(), "For people."}, &Ignore<Faults>},
    KeyRow<Faults>{{"faults", kFaultList, kFaultListSentence, true},
                   [](const JsonNode& value, Faults& faults) { faults = ReadFaults(value); }},
};
constexpr KeyTable<Faults> kScript{"faultScript", "a fault script", kScriptRows};

}  // namespace

std::vector<Fault> ReadFaults(const JsonNode& list) {
  std::vector<Fault> faults;
  for (const JsonNode& element : ElementsOf(list)) {
    Fault& fault = faults.emplace_back();
    fault.origin = element.file + ":" + std::to_string(element.line);
    ReadObject(element, kFault, fault);
  }
  return faults;
}

std::vector<Fault> ReadFaultScript(const std::string& file) {
  std::vector<Fault> faults;
  ReadObject(ReadJson(file), kScript, faults);
  return faults;
}

std::vector<KeyGroup> FaultKeys() {
  return {kScript.Group(), kFault.Group(), kPlace.Group(), kAction.Group()};
}

}  // namespace simulator
