#include "simulator/faults/fault_script.h"

#include <algorithm>
#include <array>
#include <limits>

#include "simulator/catalog/json_keys.h"

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

// A place as it is written; what belongs together is put together behind the last key.
struct WrittenPlace {
  FaultPlace place;
  const PartRow* part = nullptr;
  const JsonNode* block = nullptr;
  const JsonNode* read = nullptr;
};

bool IsCommand(std::string_view name) {
  if (name == "FF" || name == "EM" || name == "CAN") return true;
  const std::size_t letter = name.starts_with("ESC ") ? 4 : 3;
  const bool prefixed = letter == 4 || name.starts_with("FS ");
  return prefixed && name.size() == letter + 1 && name[letter] > ' ' && name[letter] < 0x7F;
}

void ReadCommand(const JsonNode& value, WrittenPlace& written) {
  if (!IsCommand(TextOf(value))) {
    value.FailExpecting("a command: FS or ESC, a blank and its letter, or FF, EM or CAN");
  }
  written.place.command = TextOf(value);
}

void ReadOccurrence(const JsonNode& value, WrittenPlace& written) {
  if (std::holds_alternative<std::int64_t>(value.value)) {
    written.place.occurrence = WholeOf(value, 1, kMost);
  } else if (const auto* text = std::get_if<std::string>(&value.value); text && *text == "every") {
    written.place.occurrence.reset();
  } else {
    value.FailExpecting("a whole number from 1 on, or \"every\"");
  }
}

void ReadPart(const JsonNode& value, WrittenPlace& written) {
  const std::string& name = TextOf(value);
  for (const PartRow& row : kParts) {
    if (row.name == name) written.part = &row;
  }
  if (written.part == nullptr) FailUnknownName(value, "a part of the command", FaultParts());
}

template <auto kMember>
void ReadNumber(const JsonNode& value, WrittenPlace& written) {
  written.place.*kMember = WholeOf(value, 0, kMost);
}

constexpr std::array kPlaceKeys{
    KeyRow<WrittenPlace>{"transfer", &ReadNumber<&FaultPlace::transfer>},
    KeyRow<WrittenPlace>{"readFrom", &ReadNumber<&FaultPlace::readFrom>},
    KeyRow<WrittenPlace>{"byte", &ReadNumber<&FaultPlace::byte>},
    KeyRow<WrittenPlace>{"command", &ReadCommand},
    KeyRow<WrittenPlace>{"occurrence", &ReadOccurrence},
    KeyRow<WrittenPlace>{"part", &ReadPart},
    KeyRow<WrittenPlace>{
        "block", [](const JsonNode& value, WrittenPlace& written) { written.block = &value; }},
    KeyRow<WrittenPlace>{
        "read", [](const JsonNode& value, WrittenPlace& written) { written.read = &value; }},
};

const PartRow& PartNamed(std::string_view name) {
  return *std::find_if(kParts.begin(), kParts.end(),
                       [&](const PartRow& row) { return row.name == name; });
}

// The first block of an extended scan comes behind the header that answers the command; on a
// standard scanner that answer is the block's own header.
void PlaceInBlocks(const WrittenPlace& written, const PartRow& part, FaultPlace& place) {
  const std::uint32_t block = written.block == nullptr ? 0 : WholeOf(*written.block, 0, kMost);
  place.write += block;
  if (written.read != nullptr) {
    if (!part.read) written.read->Fail("the answer to a block is written, not read");
    place.read = WholeOf(*written.read, 0, kMost);
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

void ReadPlace(const JsonNode& node, Fault& fault) {
  WrittenPlace written;
  ReadObject<WrittenPlace>(node, kPlaceKeys, written);
  RequireOneAddress(node, written);
  const bool inBlocks = written.block != nullptr || written.read != nullptr;
  const PartRow& part =
      written.part != nullptr ? *written.part : PartNamed(inBlocks ? "block" : "reply");
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
  if (const auto* const word = std::get_if<std::string>(&value.value); word && *word == "half") {
    fault.kind = FaultKind::kHalve;
    return;
  }
  fault.kind = FaultKind::kCut;
  fault.count = WholeOf(value, 0, kMost);
}

void Answer(const JsonNode& value, Fault& fault) {
  fault.kind = FaultKind::kAnswer;
  fault.bytes = BytesOf(value);
}

void Hold(const JsonNode& value, Fault& fault) {
  fault.kind = FaultKind::kHold;
  fault.count = WholeOf(value, 1, kMost);
}

constexpr std::array kActionKeys{KeyRow<Fault>{"cut", &Cut}, KeyRow<Fault>{"answer", &Answer},
                                 KeyRow<Fault>{"hold", &Hold}};

void ReadAction(const JsonNode& value, Fault& fault) {
  if (const auto* const word = std::get_if<std::string>(&value.value)) {
    if (*word != "fail" && *word != "unplug") {
      value.FailExpecting(
          "\"fail\", \"unplug\", or an object with one of \"cut\", \"answer\" and \"hold\"");
    }
    fault.kind = *word == "fail" ? FaultKind::kFail : FaultKind::kUnplug;
    return;
  }
  ReadObject<Fault>(value, kActionKeys, fault);
  if (MembersOf(value).size() != 1) {
    value.Fail("expected exactly one of \"cut\", \"answer\" and \"hold\"");
  }
}

constexpr std::array kFaultKeys{KeyRow<Fault>{"description", &IgnoreText<Fault>},
                                KeyRow<Fault>{"at", &ReadPlace}, KeyRow<Fault>{"do", &ReadAction}};

Fault ReadFault(const JsonNode& node) {
  Fault fault;
  fault.origin = node.file + ":" + std::to_string(node.line);
  ReadObject<Fault>(node, kFaultKeys, fault);
  for (const std::string_view needed : {"at", "do"}) {
    if (FindKey(node, needed) == nullptr) {
      node.Fail("a fault needs the key \"" + std::string(needed) + "\"");
    }
  }
  return fault;
}

constexpr std::array kScriptKeys{
    KeyRow<std::vector<Fault>>{"$schema", &IgnoreText<std::vector<Fault>>},
    KeyRow<std::vector<Fault>>{"description", &IgnoreText<std::vector<Fault>>},
    KeyRow<std::vector<Fault>>{
        "faults",
        [](const JsonNode& value, std::vector<Fault>& faults) { faults = ReadFaults(value); }},
};

}  // namespace

std::vector<Fault> ReadFaults(const JsonNode& list) {
  std::vector<Fault> faults;
  for (const JsonNode& element : ElementsOf(list)) faults.push_back(ReadFault(element));
  return faults;
}

std::vector<Fault> ReadFaultScript(const std::string& file) {
  const JsonNode script = ReadJson(file);
  std::vector<Fault> faults;
  ReadObject<std::vector<Fault>>(script, kScriptKeys, faults);
  if (FindKey(script, "faults") == nullptr) script.Fail("a fault script needs the key \"faults\"");
  return faults;
}

std::vector<std::string_view> FaultScriptKeys() {
  return KeysOf<std::vector<Fault>>(kScriptKeys);
}

std::vector<std::string_view> FaultKeys() {
  return KeysOf<Fault>(kFaultKeys);
}

std::vector<std::string_view> FaultPlaceKeys() {
  return KeysOf<WrittenPlace>(kPlaceKeys);
}

std::vector<std::string_view> FaultActionKeys() {
  return KeysOf<Fault>(kActionKeys);
}

std::vector<std::string_view> FaultParts() {
  std::vector<std::string_view> names;
  names.reserve(kParts.size());
  for (const PartRow& row : kParts) names.push_back(row.name);
  return names;
}

}  // namespace simulator
