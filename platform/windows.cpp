#define WIN32_LEAN_AND_MEAN
#include <windows.h>
#include <oleauto.h>
#include <wia.h>

#include "platform/operating_system.h"
#include "platform/process_heap.h"
#include "platform/trace.h"

// Exported by wiaservc.dll; the caller frees the text with SysFreeString.
extern "C" __declspec(dllimport) BSTR wiasFormatArgs(const char* format, ...);

namespace pmddb832::platform {
namespace {

constexpr GUID kWiaLogClass = {
    0xA1E75357, 0x881A, 0x419E, {0x83, 0xE2, 0xBB, 0x16, 0xDB, 0x19, 0x7C, 0x68}};
constexpr GUID kWiaLogInterface = {
    0xA00C10B6, 0x82A1, 0x452F, {0x8B, 0x6C, 0x86, 0x06, 0x2A, 0xAD, 0x68, 0x90}};
constexpr LONG kTraceFlag = 1;
constexpr LONG kNoResourceId = 0;

// A TraceLog is never defined here: the pointer is that of the log's COM interface.
IWiaLog& Interface(TraceLog& log) {
  return reinterpret_cast<IWiaLog&>(log);
}

}  // namespace

TraceLog* CreateTraceLog(void* moduleInstance) {
  void* log = nullptr;
  const HRESULT created =
      CoCreateInstance(kWiaLogClass, nullptr, CLSCTX_INPROC_SERVER, kWiaLogInterface, &log);
  if (FAILED(created) || log == nullptr) return nullptr;
  // The interface takes the low half of the handle only.
  static_cast<IWiaLog*>(log)->InitializeLog(
      static_cast<LONG>(reinterpret_cast<std::uintptr_t>(moduleInstance)));
  return static_cast<TraceLog*>(log);
}

void WriteTrace(TraceLog& log, const char* format, const char* name, std::int32_t detail) {
  const BSTR text = wiasFormatArgs(format, name);
  if (text == nullptr) return;
  Interface(log).Log(kTraceFlag, kNoResourceId, detail, text);
  SysFreeString(text);
}

void ReleaseTraceLog(TraceLog& log) {
  Interface(log).Release();
}

std::uint8_t* AllocateFromProcessHeap(std::size_t bytes) {
  return static_cast<std::uint8_t*>(HeapAlloc(GetProcessHeap(), HEAP_ZERO_MEMORY, bytes));
}

void FreeToProcessHeap(std::uint8_t* block) {
  if (block != nullptr) HeapFree(GetProcessHeap(), 0, block);
}

void SleepMilliseconds(std::uint32_t milliseconds) {
  Sleep(milliseconds);
}

void RepaintNow(void* window) {
  if (window == nullptr) return;
  InvalidateRect(static_cast<HWND>(window), nullptr, FALSE);
  UpdateWindow(static_cast<HWND>(window));
}

std::optional<OperatingSystemVersion> QueryOperatingSystemVersion() {
  OSVERSIONINFOA info = {};
  info.dwOSVersionInfoSize = sizeof(info);
  static_assert(sizeof(info) == 148);
  if (!GetVersionExA(&info)) return std::nullopt;
  return OperatingSystemVersion{info.dwPlatformId, info.dwMajorVersion, info.dwMinorVersion};
}

}  // namespace pmddb832::platform
