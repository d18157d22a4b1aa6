#pragma once

#include <windows.h>
// windows.h comes first: wincodec.h builds on it.
#include <wincodec.h>

#include <cstdint>
#include <string>

namespace pmscan {

// Owns one reference to a COM object.
template <typename Interface>
class ComPointer {
 public:
  ComPointer() = default;
  ~ComPointer() { Reset(); }
  ComPointer(const ComPointer&) = delete;
  ComPointer& operator=(const ComPointer&) = delete;

  Interface* operator->() const { return object_; }
  Interface* Get() const { return object_; }

  // Where a call stores the object; drops the one that was there.
  Interface** Receive() {
    Reset();
    return &object_;
  }
  void Reset() {
    if (object_ != nullptr) object_->Release();
    object_ = nullptr;
  }

 private:
  Interface* object_ = nullptr;
};

// Throws Failure(`failureCode`) that says which step failed on which file.
void RequireSuccess(HRESULT result, std::uint32_t failureCode, const char* step,
                    const std::string& file);

// Windows' imaging component; a failure to create it is one of `file`.
void CreateImagingFactory(ComPointer<IWICImagingFactory>& factory, std::uint32_t failureCode,
                          const std::string& file);

}  // namespace pmscan
