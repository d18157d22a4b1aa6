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

  STDMETHODIMP QueryInterface(REFIID interfaceId, void** object) override;
  STDMETHODIMP_(ULONG) AddRef() override { return ++references_; }
  STDMETHODIMP_(ULONG) Release() override;

  STDMETHODIMP LockDevice(DWORD timeoutMilliseconds) override;
  STDMETHODIMP UnLockDevice() override;
  STDMETHODIMP RawReadData(void* buffer, DWORD* byteCount, OVERLAPPED* overlapped) override;
  STDMETHODIMP RawWriteData(void* buffer, DWORD byteCount, OVERLAPPED* overlapped) override;
  STDMETHODIMP GetLastError(DWORD* error) override;
  STDMETHODIMP GetLastErrorInfo(STI_ERROR_INFO* info) override;

  STDMETHODIMP Initialize(HINSTANCE, LPCWSTR, DWORD, DWORD) override { return E_NOTIMPL; }
  STDMETHODIMP GetCapabilities(STI_DEV_CAPS*) override { return E_NOTIMPL; }
  STDMETHODIMP GetStatus(STI_DEVICE_STATUS*) override { return E_NOTIMPL; }
  STDMETHODIMP DeviceReset() override { return E_NOTIMPL; }
  STDMETHODIMP Diagnostic(STI_DIAG*) override { return E_NOTIMPL; }
  STDMETHODIMP Escape(STI_RAW_CONTROL_CODE, void*, DWORD, void*, DWORD, DWORD*) override {
    return E_NOTIMPL;
  }
  STDMETHODIMP RawReadCommand(void*, DWORD*, OVERLAPPED*) override { return E_NOTIMPL; }
  STDMETHODIMP RawWriteCommand(void*, DWORD, OVERLAPPED*) override { return E_NOTIMPL; }
  STDMETHODIMP Subscribe(STISUBSCRIBE*) override { return E_NOTIMPL; }
  STDMETHODIMP GetLastNotificationData(STINOTIFY*) override { return E_NOTIMPL; }
  STDMETHODIMP UnSubscribe() override { return E_NOTIMPL; }

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
