#pragma once

#include <cstddef>
#include <cstdint>

namespace pmddb832 {

namespace platform {

// The host's log: the logging object of the image acquisition service on Windows, a list of lines
// in the native build.
struct TraceLog;

// Where every trace line goes; null while there is none, and nothing is formatted then.
inline TraceLog* currentLog = nullptr;

inline constexpr std::int32_t kDetailLoadAndUnload = 1;
inline constexpr std::int32_t kDetailEnteringAndLeaving = 3;

// Creates the host's log and initialises it for the module. Null when the host has none. The
// caller owns the reference.
TraceLog* CreateTraceLog(void* moduleInstance);

// Writes one line: `format` with at most one %s, which stands for `name`.
void WriteTrace(TraceLog& log, const char* format, const char* name, std::int32_t detail);

void ReleaseTraceLog(TraceLog& log);

// Write the two lines of a scope.
void WriteEntering(TraceLog& log, const char* name);
void WriteLeaving(TraceLog& log, const char* name);

}  // namespace platform

// Writes "NAME, entering" where it is made and "NAME, leaving" where its scope ends, both to the
// log that was current at entry.
class TraceScope {
 public:
  template <std::size_t size>
  explicit TraceScope(const char (&name)[size]) : name_(name), log_(platform::currentLog) {
    static_assert(size <= kNameBufferBytes);
    if (log_ != nullptr) platform::WriteEntering(*log_, name_);
  }
  ~TraceScope() {
    if (log_ != nullptr) platform::WriteLeaving(*log_, name_);
  }
  TraceScope(const TraceScope&) = delete;
  TraceScope& operator=(const TraceScope&) = delete;

 private:
  // The longest name, terminating zero included, that the host's log is given.
  static constexpr std::size_t kNameBufferBytes = 260;

  const char* name_;
  platform::TraceLog* log_;
};

}  // namespace pmddb832
