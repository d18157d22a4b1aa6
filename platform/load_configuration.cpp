// What Windows reads before it runs a line of a library or program: where the calls through
// pointers may go, and where the value lies that guards the stack. The headers of the toolchain end
// before the fields of the control flow guard, so the record is written here.

#include <cstddef>
#include <cstdint>

namespace {

using Address = const volatile void*;

// The first fields are of no use here and zero.
struct LoadConfiguration {
  std::uint32_t bytes;
  std::uint8_t unused[0x54];
  Address securityCookie;
  Address exceptionHandlers[2];  // 32-bit Windows only
  Address checkRoutine;
  Address dispatchRoutine;
  Address callTargets;
  Address callTargetsCount;
  Address guardFlags;  // 32 bits, and 32 that are zero here
  std::uint8_t unusedToo[8];
  Address importTargets;
  Address importTargetsCount;
  Address jumpTargets;
  Address jumpTargetsCount;
};
static_assert(offsetof(LoadConfiguration, securityCookie) == 0x58);
static_assert(offsetof(LoadConfiguration, checkRoutine) == 0x70);
static_assert(offsetof(LoadConfiguration, guardFlags) == 0x90);
static_assert(offsetof(LoadConfiguration, importTargets) == 0xA0);
static_assert(sizeof(LoadConfiguration) == 0xC0);

// Windows knows by this value that the cookie is still to be drawn.
constexpr std::uintptr_t kUndrawnCookie = 0x2B992DDFA232;

}  // namespace

// The names are those of the compiler and the linker.
// NOLINTBEGIN(bugprone-reserved-identifier,readability-identifier-naming)
extern "C" {

// The linker's: tables, and counts and flags in the place of addresses.
extern const char __guard_fids_table, __guard_fids_count, __guard_flags;
extern const char __guard_iat_table, __guard_iat_count;
extern const char __guard_longjmp_table, __guard_longjmp_count;

// Where Windows has no control flow guard, a call goes where it wants to. The two are no functions
// to the compiler, or they would be among those that may be called through pointers.
extern const char dispatchWithoutGuard, checkWithoutGuard;
asm(R"(
  .text
dispatchWithoutGuard:
  jmpq *%rax
checkWithoutGuard:
  retq
)");

// What the compiler calls through. Windows writes its own routines here while it loads the file.
[[gnu::section(".00cfg")]] extern const Address __guard_dispatch_icall_fptr = &dispatchWithoutGuard;
[[gnu::section(".00cfg")]] extern const Address __guard_check_icall_fptr = &checkWithoutGuard;

std::uintptr_t __stack_chk_guard = kUndrawnCookie;

// The stack was overwritten: nothing that lies on it can be trusted, so the process ends at once.
[[noreturn]] void __stack_chk_fail() {
  constexpr int kStackCookieCheckFailed = 2;
  asm volatile("int $0x29" : : "c"(kStackCookieCheckFailed));
  __builtin_unreachable();
}

[[gnu::used]] extern const LoadConfiguration _load_config_used = {
    .bytes = sizeof(LoadConfiguration),
    .unused = {},
    .securityCookie = &__stack_chk_guard,
    .exceptionHandlers = {},
    .checkRoutine = &__guard_check_icall_fptr,
    .dispatchRoutine = &__guard_dispatch_icall_fptr,
    .callTargets = &__guard_fids_table,
    .callTargetsCount = &__guard_fids_count,
    .guardFlags = &__guard_flags,
    .unusedToo = {},
    .importTargets = &__guard_iat_table,
    .importTargetsCount = &__guard_iat_count,
    .jumpTargets = &__guard_longjmp_table,
    .jumpTargetsCount = &__guard_longjmp_count,
};

}  // extern "C"
// NOLINTEND(bugprone-reserved-identifier,readability-identifier-naming)
