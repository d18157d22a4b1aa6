// The identifiers of the interfaces become part of this program.
#define INITGUID
#include <doctest/doctest.h>

#include <array>
#include <filesystem>
#include <thread>
#include <vector>

#include "tests/dll/pmsim_library.h"

// The entries of the devices that Pmsim.dll gives.

using namespace pmsim_test;

namespace {

constexpr auto kLocked = static_cast<HRESULT>(0x80070021);

std::array<std::uint8_t, 2> reset{0x1B, 0x40};

// A small picture is on its bed, for that of the simulator takes a while to draw.
Device CreateWithFilm(const wchar_t* name) {
  const std::filesystem::path film = std::filesystem::path(PMDDB832_PROFILES) / "pictures/film.png";
  PmsimRequest asked = Asking(name);
  asked.original = film.c_str();
  return Create(asked);
}

// What is read behind a reset; 0 when that fails.
unsigned AnswerToReset(IStiDevice& device) {
  std::array<std::uint8_t, 2> command = reset;
  std::uint8_t answer = 0;
  DWORD count = 1;
  const bool isSent = device.RawWriteData(command.data(), 2, nullptr) == S_OK;
  return isSent && device.RawReadData(&answer, &count, nullptr) == S_OK ? answer : 0;
}

}  // namespace

TEST_CASE("Pmsim.dll: a device is counted by its references, and has two interfaces") {
  IStiDevice* const device = CreateWithFilm(L"sim:standard").release();
  void* object = nullptr;
  CHECK(device->QueryInterface(IID_IUnknown, &object) == S_OK);
  CHECK(object == device);
  CHECK(device->QueryInterface(IID_IStiDevice, &object) == S_OK);
  CHECK(object == device);
  CHECK(device->AddRef() == 4);
  CHECK(device->QueryInterface(IID_IStillImageW, &object) == E_NOINTERFACE);
  CHECK(object == nullptr);
  CHECK(device->QueryInterface(IID_IUnknown, nullptr) == E_POINTER);
  CHECK(device->Release() == 3);
  CHECK(device->Release() == 2);
  CHECK(device->Release() == 1);
  CHECK(device->Release() == 0);
}

TEST_CASE("Pmsim.dll: a device is locked once, and for its transfers it need not be") {
  const Device device = CreateWithFilm(L"sim:standard");
  CHECK(device->UnLockDevice() == S_FALSE);
  CHECK(device->LockDevice(0) == S_OK);
  CHECK(device->LockDevice(0) == kLocked);
  CHECK(AnswerToReset(*device) == 0x06);
  CHECK(device->UnLockDevice() == S_OK);
  CHECK(device->LockDevice(1000) == S_OK);
  CHECK(device->UnLockDevice() == S_OK);
  CHECK(AnswerToReset(*device) == 0x06);
}

TEST_CASE("Pmsim.dll: who waits for the lock has it when the other is done") {
  const Device device = CreateWithFilm(L"sim:standard");
  CHECK(device->LockDevice(0) == S_OK);
  HRESULT waited = E_FAIL;
  std::thread other([&] { waited = device->LockDevice(INFINITE); });
  CHECK(device->UnLockDevice() == S_OK);
  other.join();
  CHECK(waited == S_OK);
  CHECK(device->LockDevice(0) == kLocked);
}

TEST_CASE("Pmsim.dll: a transfer needs its bytes, and none that goes on by itself is taken") {
  const Device device = CreateWithFilm(L"sim:standard");
  OVERLAPPED later{};
  DWORD count = 1;
  std::uint8_t answer = 0;
  CHECK(device->RawWriteData(nullptr, 2, nullptr) == E_POINTER);
  CHECK(device->RawWriteData(reset.data(), 2, &later) == E_INVALIDARG);
  CHECK(device->RawReadData(&answer, nullptr, nullptr) == E_POINTER);
  CHECK(device->RawReadData(nullptr, &count, nullptr) == E_POINTER);
  CHECK(device->RawReadData(&answer, &count, &later) == E_INVALIDARG);
  CHECK(count == 1);
  CHECK(AnswerToReset(*device) == 0x06);
}

TEST_CASE("Pmsim.dll: a transfer that fails is the last error, with words") {
  const Device device = CreateWithFilm(L"sim:standard");
  DWORD error = 1;
  CHECK(device->GetLastError(&error) == S_OK);
  CHECK(error == 0);
  std::uint8_t answer = 0;
  DWORD count = 1;
  const HRESULT result = device->RawReadData(&answer, &count, nullptr);
  CHECK(FAILED(result));
  CHECK(count == 0);
  CHECK(device->GetLastError(&error) == S_OK);
  CHECK(error == static_cast<DWORD>(result));
  CHECK(device->GetLastError(nullptr) == E_POINTER);

  STI_ERROR_INFO info{};
  CHECK(device->GetLastErrorInfo(&info) == E_INVALIDARG);
  info.dwSize = sizeof(info);
  CHECK(device->GetLastErrorInfo(&info) == S_OK);
  CHECK(info.dwGenericError == error);
  CHECK(std::wstring(info.szExtendedErrorText).starts_with(L"violation: "));
  CHECK(device->GetLastErrorInfo(nullptr) == E_POINTER);
}

TEST_CASE("Pmsim.dll: the other entries are there, and refuse") {
  const Device device = CreateWithFilm(L"sim:standard");
  CHECK(device->Initialize(nullptr, nullptr, 0, 0) == E_NOTIMPL);
  CHECK(device->GetCapabilities(nullptr) == E_NOTIMPL);
  CHECK(device->GetStatus(nullptr) == E_NOTIMPL);
  CHECK(device->DeviceReset() == E_NOTIMPL);
  CHECK(device->Diagnostic(nullptr) == E_NOTIMPL);
  CHECK(device->Escape(0, nullptr, 0, nullptr, 0, nullptr) == E_NOTIMPL);
  CHECK(device->RawReadCommand(nullptr, nullptr, nullptr) == E_NOTIMPL);
  CHECK(device->RawWriteCommand(nullptr, 0, nullptr) == E_NOTIMPL);
  CHECK(device->Subscribe(nullptr) == E_NOTIMPL);
  CHECK(device->GetLastNotificationData(nullptr) == E_NOTIMPL);
  CHECK(device->UnSubscribe() == E_NOTIMPL);
}

TEST_CASE("Pmsim.dll: a device outlives the last FreeLibrary of its host") {
  const Device device = CreateWithFilm(L"sim:extended");
  CHECK(GetModuleHandleW(L"Pmsim.dll") != nullptr);
  CHECK(AnswerToReset(*device) == 0x06);
}

TEST_CASE("Pmsim.dll: several threads have devices of their own at once") {
  std::array<unsigned, 4> answered{};
  std::vector<std::thread> threads;
  for (unsigned& count : answered) {
    threads.emplace_back([&count] {
      const Device device = CreateWithFilm(L"sim:extended");
      for (int i = 0; i < 50; ++i) count += AnswerToReset(*device) == 0x06 ? 1U : 0U;
    });
  }
  for (std::thread& thread : threads) thread.join();
  CHECK(answered == std::array<unsigned, 4>{50, 50, 50, 50});
}

TEST_CASE("Pmsim.dll: transfers of several threads on one device come one behind the other") {
  const Device device = CreateWithFilm(L"sim:extended");
  std::array<unsigned, 4> taken{};
  std::vector<std::thread> threads;
  for (unsigned& count : taken) {
    threads.emplace_back([&] {
      for (int i = 0; i < 500; ++i) {
        std::array<std::uint8_t, 2> command = reset;
        count += device->RawWriteData(command.data(), 2, nullptr) == S_OK ? 1U : 0U;
      }
    });
  }
  for (std::thread& thread : threads) thread.join();
  CHECK(taken == std::array<unsigned, 4>{500, 500, 500, 500});
}
