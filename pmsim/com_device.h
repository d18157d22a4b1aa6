#pragma once

#include <windows.h>
// windows.h comes first: sti.h builds on it.
#include <sti.h>

#include <atomic>
#include <condition_variable>
#include <mutex>

#include "pmsim/served_device.h"

namespace pmsim {

// The still-image device that hosts call. Nothing is thrown through its entries.
class ComDevice final : public IStiDevice {
 public:
  // Has one reference; the last Release deletes it. Throws as MakeDeviceSource does.
  ComDevice(const DeviceRequest& request, const Surroundings& surroundings)
      : served_(request, surroundings) {}
  ComDevice(const ComDevice&) = delete;
  ComDevice& operator=(const ComDevice&) = delete;

  std::string ModelId() const { return served_.ModelId(); }

  STDMETHODIMP QueryInterface(REFIID interfaceId, void** object) noexcept override;
  STDMETHODIMP_(ULONG) AddRef() noexcept override { return ++references_; }
  STDMETHODIMP_(ULONG) Release() noexcept override;

  STDMETHODIMP LockDevice(DWORD timeoutMilliseconds) noexcept override;
  STDMETHODIMP UnLockDevice() noexcept override;
  STDMETHODIMP RawReadData(void* buffer, DWORD* byteCount,
                           OVERLAPPED* overlapped) noexcept override;
  STDMETHODIMP RawWriteData(void* buffer, DWORD byteCount,
                            OVERLAPPED* overlapped) noexcept override;
  STDMETHODIMP GetLastError(DWORD* error) noexcept override;
  STDMETHODIMP GetLastErrorInfo(STI_ERROR_INFO* info) noexcept override;

  STDMETHODIMP Initialize(HINSTANCE, LPCWSTR, DWORD, DWORD) noexcept override { return E_NOTIMPL; }
  STDMETHODIMP GetCapabilities(STI_DEV_CAPS*) noexcept override { return E_NOTIMPL; }
  STDMETHODIMP GetStatus(STI_DEVICE_STATUS*) noexcept override { return E_NOTIMPL; }
  STDMETHODIMP DeviceReset() noexcept override { return E_NOTIMPL; }
  STDMETHODIMP Diagnostic(STI_DIAG*) noexcept override { return E_NOTIMPL; }
  STDMETHODIMP Escape(STI_RAW_CONTROL_CODE, void*, DWORD, void*, DWORD, DWORD*) noexcept override {
    return E_NOTIMPL;
  }
  STDMETHODIMP RawReadCommand(void*, DWORD*, OVERLAPPED*) noexcept override { return E_NOTIMPL; }
  STDMETHODIMP RawWriteCommand(void*, DWORD, OVERLAPPED*) noexcept override { return E_NOTIMPL; }
  STDMETHODIMP Subscribe(STISUBSCRIBE*) noexcept override { return E_NOTIMPL; }
  STDMETHODIMP GetLastNotificationData(STINOTIFY*) noexcept override { return E_NOTIMPL; }
  STDMETHODIMP UnSubscribe() noexcept override { return E_NOTIMPL; }

 private:
  ~ComDevice() = default;

  template <class Operation>
  HRESULT Transfer(const Operation& operation);

  std::atomic<ULONG> references_ = 1;

  std::mutex transferring_;  // guards the next two
  ServedDevice served_;
  HRESULT lastFailure_ = S_OK;

  std::mutex locking_;  // guards isLocked_
  std::condition_variable unlocked_;
  bool isLocked_ = false;
};

}  // namespace pmsim
