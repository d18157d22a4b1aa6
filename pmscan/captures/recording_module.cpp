#include "pmscan/captures/recording_module.h"

#include "pmscan/captures/call_values.h"

namespace pmscan {
namespace {

// The module that is recorded, and who records it.
ModuleExports recorded;
capture::Recorder* recorder = nullptr;

template <std::size_t index,
          class Function = decltype(recorded.*std::get<index>(kModuleExports).member)>
struct RecordedExport;

template <std::size_t index, class Result, class... Parameter>
struct RecordedExport<index, Result (*&)(Parameter...)> {
  static Result Call(Parameter... parameter) {
    constexpr auto kExported = std::get<index>(kModuleExports);
    constexpr capture::ExportRow kRow = *capture::ExportOf(kExported.name);
    NamedNumbers arguments(kRow.arguments);
    (arguments.AddArgument(parameter), ...);
    recorder->BeginCall(kExported.name, arguments.Values());
    NamedNumbers results(kRow.results);
    const auto end = [&] {
      (results.AddFilled(parameter), ...);
      recorder->EndCall(results.Values(), LinesChecksum(parameter...));
    };
    if constexpr (std::is_void_v<Result>) {
      (recorded.*kExported.member)(parameter...);
      end();
    } else {
      const Result result = (recorded.*kExported.member)(parameter...);
      results.Add(result, true);
      end();
      return result;
    }
  }
};

template <std::size_t... index>
ModuleExports RecordedExports(std::index_sequence<index...>) {
  ModuleExports exports;
  ((exports.*std::get<index>(kModuleExports).member = &RecordedExport<index>::Call), ...);
  return exports;
}

}  // namespace

RecordingModule::RecordingModule(const ModuleExports& recordedModule,
                                 capture::Recorder& callRecorder) {
  recorded = recordedModule;
  recorder = &callRecorder;
}

RecordingModule::~RecordingModule() {
  recorded = {};
  recorder = nullptr;
}

ModuleExports RecordingModule::Exports() {
  return RecordedExports(std::make_index_sequence<std::tuple_size_v<decltype(kModuleExports)>>());
}

}  // namespace pmscan
