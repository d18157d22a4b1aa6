#include "pmscan/settings/number_file.h"

#include <algorithm>
#include <charconv>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <vector>

#include "pmscan/command_line/failure.h"
#include "pmscan/report/error_codes.h"

namespace pmscan {
namespace {

struct NumberRange {
  int least;
  int most;
};

int ReadNumber(const std::string& word, const std::string& place, const NumberRange& range) {
  int number = 0;
  const char* const end = word.data() + word.size();
  const auto [rest, error] = std::from_chars(word.data(), end, number);
  if (error == std::errc() && rest == end && number >= range.least && number <= range.most) {
    return number;
  }
  throw Failure(kNumberFile, place + ": expected a whole number from " +
                                 std::to_string(range.least) + " to " + std::to_string(range.most) +
                                 ", got \"" + word + "\".");
}

void ReadLine(std::string line, const std::string& place, const NumberRange& range,
              std::vector<int>& numbers) {
  line.resize(std::min(line.size(), line.find('#')));
  std::replace(line.begin(), line.end(), ',', ' ');
  std::istringstream words(line);
  for (std::string word; words >> word;) numbers.push_back(ReadNumber(word, place, range));
}

std::vector<int> ReadNumbers(const std::string& file, const NumberRange& range) {
  std::ifstream stream(std::filesystem::path(std::u8string(file.begin(), file.end())));
  if (!stream) throw Failure(kNumberFile, file + " cannot be opened.");
  std::vector<int> numbers;
  std::size_t number = 0;
  for (std::string line; std::getline(stream, line);) {
    ReadLine(line, file + ":" + std::to_string(++number), range, numbers);
  }
  return numbers;
}

[[noreturn]] void RefuseCount(const std::string& file, const std::string& wanted,
                              std::size_t count) {
  throw Failure(kNumberFile,
                file + ": expected " + wanted + ", got " + std::to_string(count) + " numbers.");
}

GammaTables::Table TableAt(const std::vector<int>& numbers, std::size_t first) {
  GammaTables::Table table{};
  for (std::size_t i = 0; i < table.size(); ++i) {
    table[i] = static_cast<std::uint8_t>(numbers[first + i]);
  }
  return table;
}

}  // namespace

GammaTables ReadGammaTables(const std::string& file) {
  const std::vector<int> numbers = ReadNumbers(file, {0, 255});
  if (numbers.size() != 256 && numbers.size() != 768) {
    RefuseCount(file, "a table of 256 numbers, or three for red, green and blue", numbers.size());
  }
  const std::size_t step = numbers.size() == 768 ? 256 : 0;
  return {TableAt(numbers, 0), TableAt(numbers, step), TableAt(numbers, 2 * step)};
}

ColorMatrix ReadColorMatrix(const std::string& file) {
  ColorMatrix matrix{};
  const std::vector<int> numbers = ReadNumbers(file, {-128, 127});
  if (numbers.size() != matrix.size()) RefuseCount(file, "nine numbers", numbers.size());
  std::transform(numbers.begin(), numbers.end(), matrix.begin(),
                 [](int number) { return static_cast<std::uint8_t>(number); });
  return matrix;
}

}  // namespace pmscan
