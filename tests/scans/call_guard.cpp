#include "tests/scans/call_guard.h"

#define WIN32_LEAN_AND_MEAN
#include <windows.h>

#include <atomic>
#include <cstdio>
#include <cstdlib>

// Stands in the place of the routine that calls what RAX holds: lets it be judged, with all
// registers kept that may hold arguments, and calls what the judge says.
asm(R"(
  .text
dispatchWithGuard:
  pushq %rcx
  pushq %rdx
  pushq %r8
  pushq %r9
  subq $0x68, %rsp
  movdqu %xmm0, 0x20(%rsp)
  movdqu %xmm1, 0x30(%rsp)
  movdqu %xmm2, 0x40(%rsp)
  movdqu %xmm3, 0x50(%rsp)
  movq %rax, %rcx
  callq JudgeTarget
  movdqu 0x20(%rsp), %xmm0
  movdqu 0x30(%rsp), %xmm1
  movdqu 0x40(%rsp), %xmm2
  movdqu 0x50(%rsp), %xmm3
  addq $0x68, %rsp
  popq %r9
  popq %r8
  popq %rdx
  popq %rcx
  jmpq *%rax
)");

extern const char dispatchWithGuard;  // no function to the compiler

namespace pmddb832::tests {
namespace {

std::atomic<std::size_t> guardedCalls = 0;
WrongCalls* collector = nullptr;

// The fields of a load configuration that matter here, by their offsets; addresses are absolute.
struct LoadConfiguration {
  std::uint8_t before[0x58];
  std::uint64_t* securityCookie;
  std::uint8_t between[0x18];
  const void** dispatchRoutine;
  const std::uint8_t*
      targets;  // sorted offsets in the file's image, each with some bytes behind it
  std::uint64_t targetsCount;
  std::uint32_t flags;
};
static_assert(offsetof(LoadConfiguration, dispatchRoutine) == 0x78);

constexpr std::uint32_t kHasTable = 0x400;

// Null for a file that has none, or one from before the guard.
const LoadConfiguration* LoadConfigurationOf(const std::uint8_t* image) {
  const auto* const start = reinterpret_cast<const IMAGE_DOS_HEADER*>(image);
  const auto* const headers = reinterpret_cast<const IMAGE_NT_HEADERS64*>(image + start->e_lfanew);
  const IMAGE_DATA_DIRECTORY& place =
      headers->OptionalHeader.DataDirectory[IMAGE_DIRECTORY_ENTRY_LOAD_CONFIG];
  if (place.Size < offsetof(LoadConfiguration, flags) + sizeof(std::uint32_t)) return nullptr;
  return reinterpret_cast<const LoadConfiguration*>(image + place.VirtualAddress);
}

int CompareOffsets(const void* one, const void* other) {
  const std::uint32_t left = *static_cast<const std::uint32_t*>(one);
  const std::uint32_t right = *static_cast<const std::uint32_t*>(other);
  return left < right ? -1 : static_cast<int>(left > right);
}

bool IsInTable(const LoadConfiguration& configuration, std::uint64_t offset) {
  const std::size_t bytesOfEntry = sizeof(std::uint32_t) + (configuration.flags >> 28);
  const auto wanted = static_cast<std::uint32_t>(offset);
  return std::bsearch(&wanted, configuration.targets, configuration.targetsCount, bytesOfEntry,
                      CompareOffsets) != nullptr;
}

// Where there is no table, all code may be called.
bool IsCode(const void* target) {
  constexpr DWORD kExecutable =
      PAGE_EXECUTE | PAGE_EXECUTE_READ | PAGE_EXECUTE_READWRITE | PAGE_EXECUTE_WRITECOPY;
  MEMORY_BASIC_INFORMATION page{};
  if (VirtualQuery(target, &page, sizeof page) == 0) return false;
  return page.State == MEM_COMMIT && (page.Protect & kExecutable) != 0;
}

bool MayBeCalled(std::uintptr_t target) {
  const auto* const address = reinterpret_cast<const char*>(target);
  HMODULE file = nullptr;
  if (GetModuleHandleExA(
          GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS | GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT,
          address, &file) != 0) {
    const LoadConfiguration* const configuration =
        LoadConfigurationOf(reinterpret_cast<const std::uint8_t*>(file));
    if (configuration != nullptr && (configuration->flags & kHasTable) != 0)
      return IsInTable(*configuration, target - reinterpret_cast<std::uintptr_t>(file));
  }
  return IsCode(address);
}

std::int32_t RefusedCall() {
  return E_FAIL;
}

}  // namespace

extern "C" std::uintptr_t JudgeTarget(std::uintptr_t target) {
  ++guardedCalls;
  if (MayBeCalled(target)) return target;
  if (collector == nullptr) {
    std::fprintf(stderr, "The module calls %p, which no table holds\n",
                 reinterpret_cast<void*>(target));
    std::abort();
  }
  collector->targets.push_back(target);
  return reinterpret_cast<std::uintptr_t>(&RefusedCall);
}

void GuardCalls(void* library) {
  const auto* const configuration = LoadConfigurationOf(static_cast<std::uint8_t*>(library));
  if (configuration == nullptr) return;
  const void** const routine = configuration->dispatchRoutine;
  DWORD protection = 0;
  VirtualProtect(routine, sizeof *routine, PAGE_READWRITE, &protection);
  *routine = &dispatchWithGuard;
  VirtualProtect(routine, sizeof *routine, protection, &protection);
}

std::size_t GuardedCalls() {
  return guardedCalls;
}

WrongCalls::WrongCalls() {
  collector = this;
}

WrongCalls::~WrongCalls() {
  collector = nullptr;
}

std::uint64_t SecurityCookieOf(void* library) {
  return *LoadConfigurationOf(static_cast<std::uint8_t*>(library))->securityCookie;
}

}  // namespace pmddb832::tests
