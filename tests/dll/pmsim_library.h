#pragma once

#include <windows.h>
// windows.h comes first: sti.h builds on it.
#include <sti.h>

#include <memory>
#include <stdexcept>
#include <string>

#include "pmsim/pmsim.h"

namespace pmsim_test {

struct Releasing {
  void operator()(IUnknown* object) const { object->Release(); }
};
using Device = std::unique_ptr<IStiDevice, Releasing>;

// Pmsim.dll as a host loads it that does not link with it.
class Library {
 public:
  Library() : library_(LoadLibraryW(L"Pmsim.dll")) {
    if (library_ == nullptr) throw std::runtime_error("Pmsim.dll does not load");
  }
  ~Library() { FreeLibrary(library_); }
  Library(const Library&) = delete;
  Library& operator=(const Library&) = delete;

  HRESULT Create(PmsimRequest* request, IStiDevice** device) const {
    const auto create = reinterpret_cast<decltype(&PmsimCreateDevice)>(
        reinterpret_cast<void*>(GetProcAddress(library_, "PmsimCreateDevice")));
    return create(request, device);
  }

 private:
  const HMODULE library_;
};

// A request with its size.
inline PmsimRequest Asking(const wchar_t* device) {
  PmsimRequest request{};
  request.size = sizeof(request);
  request.device = device;
  return request;
}

inline Device Create(PmsimRequest request) {
  IStiDevice* device = nullptr;
  const HRESULT result = Library().Create(&request, &device);
  if (FAILED(result)) throw std::runtime_error("Pmsim.dll gives no device");
  return Device(device);
}

}  // namespace pmsim_test
