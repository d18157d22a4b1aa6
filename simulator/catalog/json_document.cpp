#include "simulator/catalog/json_document.h"

#include <algorithm>
#include <fstream>
#include <iterator>
#include <nlohmann/json.hpp>

#include "simulator/catalog/file_names.h"
#include "simulator/catalog/profile_error.h"

namespace simulator {
namespace {

using Json = nlohmann::json;

constexpr std::size_t kDeepest = 32;

// Feeds the parser, which tells no positions, and knows how far it has read.
class CountingReader {
 public:
  using iterator_category = std::input_iterator_tag;  // NOLINT(readability-identifier-naming)
  using value_type = char;                            // NOLINT(readability-identifier-naming)
  using difference_type = std::ptrdiff_t;             // NOLINT(readability-identifier-naming)
  using pointer = const char*;                        // NOLINT(readability-identifier-naming)
  using reference = const char&;                      // NOLINT(readability-identifier-naming)

  CountingReader(const char* start, const char** furthest) : at_(start), reached_(furthest) {}

  reference operator*() const { return *at_; }
  CountingReader& operator++() {
    *reached_ = ++at_;
    return *this;
  }
  bool operator==(const CountingReader& other) const { return at_ == other.at_; }
  bool operator!=(const CountingReader& other) const { return at_ != other.at_; }

 private:
  const char* at_;
  const char** reached_;
};

// "[json.exception.parse_error.101] parse error at line 3, column 5: syntax error ..." without what
// stands in front of "syntax error".
std::string WithoutPosition(std::string_view message) {
  const std::size_t column = message.find(", column ");
  const std::size_t end = column == std::string_view::npos ? column : message.find(": ", column);
  return std::string(end == std::string_view::npos ? message : message.substr(end + 2));
}

// Grows the tree as the parser meets the parts of the text.
class TreeBuilder final : public nlohmann::json_sax<Json> {
 public:
  TreeBuilder(std::string_view parsedText, const std::string& parsedFile)
      : text_(parsedText), file_(parsedFile), reached_(parsedText.data()) {}

  bool Parse() {
    const char* const start = text_.data();
    return Json::sax_parse(CountingReader(start, &reached_),
                           CountingReader(start + text_.size(), &reached_), this);
  }
  JsonNode&& Take() { return std::move(root_); }

  bool null() override { return Put(std::monostate{}); }
  bool boolean(bool value) override { return Put(value); }
  bool number_integer(number_integer_t value) override { return Put(std::int64_t{value}); }
  bool number_unsigned(number_unsigned_t value) override {
    const auto number = static_cast<std::int64_t>(value);
    return number < 0 ? Put(static_cast<double>(value)) : Put(number);
  }
  bool number_float(number_float_t value, const string_t&) override { return Put(value); }
  bool string(string_t& value) override { return Put(std::move(value)); }
  bool binary(binary_t&) override { return false; }
  bool start_object(std::size_t) override { return Open(JsonNode::Object{}); }
  bool end_object() override { return Close(); }
  bool start_array(std::size_t) override { return Open(JsonNode::List{}); }
  bool end_array() override { return Close(); }
  bool key(string_t& name) override;
  bool parse_error(std::size_t, const std::string&,
                   const nlohmann::detail::exception& error) override {
    throw ProfileError(file_, Line(), "", "this is no JSON: " + WithoutPosition(error.what()));
  }

 private:
  template <class Value>
  bool Put(Value&& value) {
    Place().value = std::forward<Value>(value);
    return true;
  }
  template <class Value>
  bool Open(Value&& value);
  bool Close() {
    open_.pop_back();
    return true;
  }
  JsonNode& Place();

  // A number's end is known only by the character behind it, which may be a line feed.
  std::size_t Line() const {
    const std::ptrdiff_t before = std::max<std::ptrdiff_t>(reached_ - text_.data() - 1, 0);
    return 1 + static_cast<std::size_t>(std::count(text_.begin(), text_.begin() + before, '\n'));
  }

  const std::string_view text_;
  const std::string file_;
  const char* reached_;
  JsonNode root_;
  std::vector<JsonNode*> open_;  // the objects and lists around what comes next
};

template <class Value>
bool TreeBuilder::Open(Value&& value) {
  JsonNode& node = Place();
  if (open_.size() == kDeepest) node.Fail("brackets are nested too deeply");
  node.value = std::forward<Value>(value);
  open_.push_back(&node);
  return true;
}

bool TreeBuilder::key(string_t& name) {
  const JsonNode& object = *open_.back();
  auto& members = std::get<JsonNode::Object>(open_.back()->value);
  const std::string path = object.path.empty() ? name : object.path + "." + name;
  for (const JsonMember& member : members) {
    if (member.key != name) continue;
    throw ProfileError(file_, Line(), path,
                       "the key stands in line " + std::to_string(member.value.line) + " already");
  }
  members.push_back({name, JsonNode{{}, path, Line(), file_}});
  return true;
}

// Where the next value goes: behind the key that came last, to the end of a list, or to the top.
JsonNode& TreeBuilder::Place() {
  if (open_.empty()) {
    root_.file = file_;
    root_.line = Line();
    return root_;
  }
  JsonNode& parent = *open_.back();
  if (auto* const members = std::get_if<JsonNode::Object>(&parent.value)) {
    return members->back().value;
  }
  auto& list = std::get<JsonNode::List>(parent.value);
  const std::string path = parent.path + "[" + std::to_string(list.size()) + "]";
  return list.emplace_back(JsonNode{{}, path, Line(), file_});
}

std::string Quoted(const std::string& text) {
  constexpr std::size_t kShown = 40;
  return "\"" + text.substr(0, kShown) + (text.size() > kShown ? "..." : "") + "\"";
}

}  // namespace

std::string JsonNode::Describe() const {
  if (const auto* const text = std::get_if<std::string>(&value)) return Quoted(*text);
  if (const auto* const integer = std::get_if<std::int64_t>(&value)) {
    return std::to_string(*integer);
  }
  if (const auto* const number = std::get_if<double>(&value)) return Json(*number).dump();
  if (const auto* const flag = std::get_if<bool>(&value)) return *flag ? "true" : "false";
  if (std::holds_alternative<List>(value)) return "a list";
  return std::holds_alternative<Object>(value) ? "an object" : "null";
}

void JsonNode::Fail(const std::string& sentence) const {
  throw ProfileError(file, line, path, sentence);
}

void JsonNode::FailExpecting(std::string_view what) const {
  Fail("expected " + std::string(what) + ", got " + Describe());
}

JsonNode ParseJson(std::string_view text, const std::string& file) {
  TreeBuilder builder(text, file);
  builder.Parse();
  return builder.Take();
}

JsonNode ReadJson(const std::string& file) {
  std::ifstream stream(PathOf(file), std::ios::binary);
  if (!stream) throw ProfileError(file, 0, "", "the file cannot be opened");
  stream.peek();  // some systems open a folder as well, and refuse to read it
  if (stream.bad()) throw ProfileError(file, 0, "", "the file cannot be read");
  const std::string text((std::istreambuf_iterator<char>(stream)), {});
  return ParseJson(text, file);
}

}  // namespace simulator
