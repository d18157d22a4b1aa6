#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

namespace simulator {

struct JsonMember;

// A value in a JSON file that knows where it stands, so that an error can say so.
struct JsonNode {
  using List = std::vector<JsonNode>;
  using Object = std::vector<JsonMember>;  // in the order of the file; no key stands there twice

  // Null is the monostate; a number without fraction or exponent that fits is an integer.
  std::variant<std::monostate, bool, std::int64_t, double, std::string, List, Object> value;
  std::string path;      // "identity.flatbed.width", "pages[2]"; empty for the whole
  std::size_t line = 1;  // that of its key, where it has one
  std::string file;      // as it was named to the parser

  // What stands here, for a message: "many", 3.5, a list. Long texts are cut.
  std::string Describe() const;

  // Throws ProfileError with file, line and path.
  [[noreturn]] void Fail(const std::string& sentence) const;
  // Throws "expected WHAT, got ...".
  [[noreturn]] void FailExpecting(std::string_view what) const;
};

struct JsonMember {
  std::string key;
  JsonNode value;
};

// Parses a JSON text. Throws ProfileError, also for a key that stands in an object twice and for
// brackets nested deeper than any profile has them.
JsonNode ParseJson(std::string_view text, const std::string& file);

// Reads and parses a file; its name in UTF-8.
JsonNode ReadJson(const std::string& file);

}  // namespace simulator
