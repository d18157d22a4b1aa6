// The identifiers of the interfaces become part of this object.
#define INITGUID
#include "pmsim/com_device.h"

#include <chrono>
#include <new>

#include "pmsim/system_text.h"

namespace pmsim {
namespace {

constexpr HRESULT kLocked = HRESULT_FROM_WIN32(ERROR_LOCK_VIOLATION);

}  // namespace

HRESULT ComDevice::QueryInterface(REFIID interfaceId, void** object) noexcept {
  if (object == nullptr) return E_POINTER;
  const bool isOurs =
      IsEqualGUID(interfaceId, IID_IUnknown) || IsEqualGUID(interfaceId, IID_IStiDevice);
  *object = isOurs ? this : nullptr;
  if (!isOurs) return E_NOINTERFACE;
  AddRef();
  return S_OK;
}

ULONG ComDevice::Release() noexcept {
  const ULONG left = --references_;
  if (left == 0) delete this;
  return left;
}

HRESULT ComDevice::LockDevice(DWORD timeoutMilliseconds) noexcept {
  std::unique_lock guard(locking_);
  const bool isFree = unlocked_.wait_for(guard, std::chrono::milliseconds(timeoutMilliseconds),
                                         [this] { return !isLocked_; });
  if (!isFree) return kLocked;
  isLocked_ = true;
  return S_OK;
}

HRESULT ComDevice::UnLockDevice() noexcept {
  const std::lock_guard guard(locking_);
  if (!isLocked_) return S_FALSE;
  isLocked_ = false;
  unlocked_.notify_one();
  return S_OK;
}

template <class Operation>
HRESULT ComDevice::Transfer(const Operation& operation) {
  const std::lock_guard guard(transferring_);
  HRESULT result = E_FAIL;
  try {
    result = operation(served_.Device());
  } catch (const std::bad_alloc&) {
    result = E_OUTOFMEMORY;
  } catch (...) {
    result = E_FAIL;
  }
  if (FAILED(result)) lastFailure_ = result;
  return result;
}

HRESULT ComDevice::RawReadData(void* buffer, DWORD* byteCount, OVERLAPPED* overlapped) noexcept {
  if (byteCount == nullptr || (buffer == nullptr && *byteCount > 0)) return E_POINTER;
  if (overlapped != nullptr) return E_INVALIDARG;
  std::uint32_t bytes = *byteCount;
  const HRESULT result = Transfer([&](pmddb832::StillImageDevice& device) {
    return device.RawReadData(buffer, &bytes, nullptr);
  });
  *byteCount = bytes;
  return result;
}

HRESULT ComDevice::RawWriteData(void* buffer, DWORD byteCount, OVERLAPPED* overlapped) noexcept {
  if (buffer == nullptr && byteCount > 0) return E_POINTER;
  if (overlapped != nullptr) return E_INVALIDARG;
  return Transfer([&](pmddb832::StillImageDevice& device) {
    return device.RawWriteData(buffer, byteCount, nullptr);
  });
}

HRESULT ComDevice::GetLastError(DWORD* error) noexcept {
  if (error == nullptr) return E_POINTER;
  const std::lock_guard guard(transferring_);
  *error = static_cast<DWORD>(lastFailure_);
  return S_OK;
}

HRESULT ComDevice::GetLastErrorInfo(STI_ERROR_INFO* info) noexcept {
  if (info == nullptr) return E_POINTER;
  if (info->dwSize != sizeof(*info)) return E_INVALIDARG;
  const std::lock_guard guard(transferring_);
  try {
    StoreText(served_.Complaint(), info->szExtendedErrorText, std::size(info->szExtendedErrorText));
  } catch (const std::bad_alloc&) {
    return E_OUTOFMEMORY;
  }
  info->dwGenericError = static_cast<DWORD>(lastFailure_);
  info->dwVendorError = 0;
  return S_OK;
}

}  // namespace pmsim
