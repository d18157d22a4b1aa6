#include <doctest/doctest.h>

#include <algorithm>
#include <cwchar>
#include <filesystem>

#include "tests/dll/pmsim_library.h"

// Which requests Pmsim.dll meets, and what it does with hostile ones.

using namespace pmsim_test;

namespace {

namespace fs = std::filesystem;

// A request that was not met.
struct Refused {
  explicit Refused(PmsimRequest asked) : request(asked) {
    result = Library().Create(&request, &device);
  }
  bool Says(const wchar_t* words) const {
    return std::wstring(request.message).find(words) != std::wstring::npos;
  }

  PmsimRequest request;
  IStiDevice* device = reinterpret_cast<IStiDevice*>(1);
  HRESULT result = S_OK;
};

}  // namespace

TEST_CASE("Pmsim.dll: nulls are refused") {
  const Library library;
  PmsimRequest request = Asking(L"sim:extended");
  auto* device = reinterpret_cast<IStiDevice*>(1);
  CHECK(library.Create(&request, nullptr) == E_POINTER);
  CHECK(library.Create(nullptr, &device) == E_POINTER);
  CHECK(device == nullptr);
  CHECK(Refused(Asking(nullptr)).result == E_POINTER);
}

TEST_CASE("Pmsim.dll: of a request of another size nothing is read or written") {
  for (const std::uint32_t size : {0U, 4U, 2088U, 2095U, 2097U, 0xFFFFFFFFU}) {
    PmsimRequest asked = Asking(reinterpret_cast<const wchar_t*>(3));
    asked.size = size;
    asked.modelId[0] = 'm';
    asked.message[0] = L'm';
    const Refused refused(asked);
    CAPTURE(size);
    CHECK(refused.result == E_INVALIDARG);
    CHECK(refused.device == nullptr);
    CHECK(refused.request.modelId[0] == 'm');
    CHECK(refused.request.message[0] == L'm');
  }
}

TEST_CASE("Pmsim.dll: an unknown flag is refused") {
  PmsimRequest asked = Asking(L"sim:extended");
  asked.flags = 4;
  CHECK(Refused(asked).result == E_INVALIDARG);
  CHECK(Refused(asked).Says(L"flags: expected PMSIM_OVERWRITE and PMSIM_TOLERANT at most"));
}

TEST_CASE("Pmsim.dll: a text ends within 32768 characters") {
  std::wstring text = L"sim:" + std::wstring(32763, L'x');
  CHECK(Refused(Asking(text.c_str())).Says(L"sim:xxx"));
  text += L'x';
  const Refused refused(Asking(text.c_str()));
  CHECK(refused.result == E_INVALIDARG);
  CHECK(refused.Says(L"device: expected at most 32767 characters"));
}

TEST_CASE("Pmsim.dll: half of a letter is no text") {
  const wchar_t half[] = {L's', L'i', L'm', L':', wchar_t{0xD800}, L'x', 0};
  PmsimRequest asked = Asking(L"sim:extended");
  asked.original = half;
  CHECK(Refused(asked).result == E_INVALIDARG);
  CHECK(Refused(asked).Says(L"original: expected UTF-16"));
}

TEST_CASE("Pmsim.dll: a message is cut to its place, between two letters") {
  for (const std::size_t shift : {0U, 1U}) {
    std::wstring device(shift, L'x');
    for (int i = 0; i < 1000; ++i) device += L"\U0001F5A8";
    PmsimRequest asked = Asking(device.c_str());
    std::fill(std::begin(asked.message), std::end(asked.message), L'm');
    const Refused refused(asked);
    const std::size_t length = wcsnlen(refused.request.message, PMSIM_MESSAGE_LIMIT);
    CAPTURE(shift);
    REQUIRE(length < PMSIM_MESSAGE_LIMIT);
    CHECK(length >= PMSIM_MESSAGE_LIMIT - 2);
    CHECK(IS_LOW_SURROGATE(refused.request.message[length - 1]));
  }
}

TEST_CASE("Pmsim.dll: a picture that is none is told with Windows' reason") {
  PmsimRequest asked = Asking(L"sim:extended");
  asked.original = L"Pmsim.dll";
  const Refused refused(asked);
  CHECK(refused.result == E_INVALIDARG);
  CHECK(refused.Says(L"Pmsim.dll: cannot open it as a picture: "));
  CHECK(refused.Says(L"Windows error"));
}

TEST_CASE("Pmsim.dll: a capture may have any name, and is closed by the last Release") {
  const fs::path file = fs::temp_directory_path() / L"pmsim \u00E4\u00DF\u4E2D.capture";
  fs::remove(file);
  PmsimRequest asked = Asking(L"sim:extended");
  asked.capture = file.c_str();
  Device device = Create(asked);
  device->AddRef();
  CHECK(device->Release() == 1);
  CHECK(fs::file_size(file) > 0);
  CHECK(Refused(asked).Says(L"is there already"));
  device.reset();
  asked.flags = PMSIM_OVERWRITE;
  Create(asked).reset();
  CHECK(fs::remove(file));
}

TEST_CASE("Pmsim.dll: a scanner file brings its pictures and the id of its model") {
  const fs::path file = fs::path(PMDDB832_PROFILES) / "office_feeder.json";
  const std::wstring name = L"sim:" + file.wstring();
  PmsimRequest request = Asking(name.c_str());
  IStiDevice* device = nullptr;
  CHECK(Library().Create(&request, &device) == S_OK);
  CHECK(std::string(request.modelId) == "QM6500");
  CHECK(request.message[0] == 0);
  CHECK(device->Release() == 0);
}

TEST_CASE("Pmsim.dll: a thread keeps COM as it has it") {
  REQUIRE(CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED) == S_OK);
  const fs::path file = fs::path(PMDDB832_PROFILES) / "pictures" / "sheet_1.png";
  PmsimRequest asked = Asking(L"sim:extended");
  asked.original = file.c_str();
  Create(asked).reset();
  CHECK(CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED) == S_FALSE);
  CoUninitialize();
  CoUninitialize();
}
