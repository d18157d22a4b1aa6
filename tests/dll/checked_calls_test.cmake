# Fails when the module's code calls through a pointer without the check: when such a call is neither
# that of the guard's routine nor one of an import.
#
#   cmake "-DARCHIVES=FILE;FILE" -P checked_calls_test.cmake
cmake_minimum_required(VERSION 3.25)

find_program(OBJDUMP llvm-objdump-19 REQUIRED)
execute_process(COMMAND "${OBJDUMP}" --disassemble --reloc --no-show-raw-insn ${ARCHIVES}
  OUTPUT_VARIABLE text COMMAND_ERROR_IS_FATAL ANY)
# The line below tells where the pointer is.
string(REGEX MATCHALL "(callq[ \t]+\\*|jmpq[ \t]+\\*[^%])[^\n]*\n[^\n]*" calls "${text}")
list(LENGTH calls count)
list(FILTER calls EXCLUDE REGEX "REL32[ \t]+(__guard_dispatch_icall_fptr|__imp_[A-Za-z]+)$")
if(count LESS 40 OR calls)
  message(FATAL_ERROR "Expected at least 40 calls through pointers, all checked; of ${count} these "
    "are not: ${calls}")
endif()
