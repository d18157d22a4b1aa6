#include "pmscan/windows/imaging_component.h"

#include "pmscan/command_line/console.h"
#include "pmscan/command_line/failure.h"

namespace pmscan {

void RequireSuccess(HRESULT result, std::uint32_t failureCode, const char* step,
                    const std::string& file) {
  if (SUCCEEDED(result)) return;
  throw Failure(failureCode, file + ": cannot " + step + ": " +
                                 SystemWords(static_cast<std::uint32_t>(result)) + ".");
}

void CreateImagingFactory(ComPointer<IWICImagingFactory>& factory, std::uint32_t failureCode,
                          const std::string& file) {
  void* object = nullptr;
  RequireSuccess(CoCreateInstance(CLSID_WICImagingFactory, nullptr, CLSCTX_INPROC_SERVER,
                                  IID_IWICImagingFactory, &object),
                 failureCode, "start Windows' imaging component", file);
  *factory.Receive() = static_cast<IWICImagingFactory*>(object);
}

}  // namespace pmscan
