#include "pmscan/captures/replayed_calls.h"

#include <array>
#include <tuple>

#include "pmscan/captures/call_values.h"

namespace pmscan {
namespace {

// Stands for the host's progress routine where the capture's host had one.
void IgnoreProgress(std::uint32_t) {}

// The numbers of a capture's call in the order of its parameters.
class Numbers {
 public:
  Numbers(const capture::ExportRow& row, const std::vector<capture::Value>& values)
      : row_(row), values_(values) {}
  std::uint32_t Next() { return ValueOf(values_, row_.arguments[next_++].name); }
  std::uint32_t Of(std::string_view name) const { return ValueOf(values_, name); }

 private:
  const capture::ExportRow& row_;
  const std::vector<capture::Value>& values_;
  std::size_t next_ = 0;
};

// What the host hands over for a parameter.
template <class Parameter>
struct HandedOver {
  HandedOver(CallSurroundings& host, Numbers& numbers) {
    if constexpr (std::integral<Parameter>) {
      parameter = static_cast<Parameter>(numbers.Next());
    } else if constexpr (std::same_as<Parameter, pmddb832::ProgressCallback>) {
      parameter = numbers.Next() != 0 ? &IgnoreProgress : nullptr;
    } else if constexpr (std::same_as<Parameter, pmddb832::ScannerSettings*>) {
      parameter = &host.settings;
    } else if constexpr (std::same_as<Parameter, std::uint8_t*>) {
      host.rows.assign(numbers.Of("bufferBytes"), 0);
      parameter = host.rows.data();
    }
  }
  Parameter Get() { return parameter; }

  Parameter parameter{};
};

template <Filled Parameter>
struct HandedOver<Parameter> {
  HandedOver(CallSurroundings&, Numbers& numbers) {
    for (std::uint32_t* member : Members(record)) *member = numbers.Next();
  }
  Parameter Get() { return &record; }

  std::remove_pointer_t<Parameter> record{};
};

template <class Result, class... Parameter>
CallOutcome Call(Result (*function)(Parameter...), const capture::ExportRow& row,
                 CallSurroundings& host, const std::vector<capture::Value>& arguments) {
  Numbers numbers(row, arguments);
  std::tuple<HandedOver<Parameter>...> handedOver{HandedOver<Parameter>(host, numbers)...};
  NamedNumbers results(row.results);
  return std::apply(
      [&](auto&... one) -> CallOutcome {
        if constexpr (std::is_void_v<Result>) {
          function(one.Get()...);
        } else {
          results.Add(function(one.Get()...), true);
        }
        (results.AddFilled(one.Get()), ...);
        return {results.Values(), LinesChecksum(one.Get()...)};
      },
      handedOver);
}

}  // namespace

CallOutcome CallModule(const capture::ExportRow& row, CallSurroundings& host,
                       const std::vector<capture::Value>& arguments) {
  CallOutcome outcome;
  const auto callIfNamed = [&](const auto& exported) {
    if (row.name != exported.name) return;
    outcome = Call(host.module.*exported.member, row, host, arguments);
  };
  std::apply([&](const auto&... exported) { (callIfNamed(exported), ...); }, kModuleExports);
  return outcome;
}

}  // namespace pmscan
