#include "pmscan/pictures/imaging_component.h"

#include <array>
#include <cstdio>

#include "pmscan/command_line/failure.h"

namespace pmscan {

void RequireSuccess(HRESULT result, std::uint32_t failureCode, const char* step,
                    const std::string& file) {
  if (SUCCEEDED(result)) return;
  std::array<char, 20> number{};
  std::snprintf(number.data(), number.size(), "0x%08lX", static_cast<unsigned long>(result));
  throw Failure(failureCode, file + ": cannot " + step + " (Windows error " + number.data() + ").");
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
