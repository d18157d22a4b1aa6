# Compares one table of a built library or program with what its users and Windows rely on:
#
#   cmake -DFILE=FILE -DTABLE=NAME [-DVERSION=x.y.z] -P check_binary.cmake
#
# TABLE is exports, imports, module_imports, libraries, version, flags, sections, guard,
# call_targets, guarded_exports or symbols.
cmake_minimum_required(VERSION 3.25)

find_program(READOBJ llvm-readobj-19 REQUIRED)
find_program(PDBUTIL llvm-pdbutil-19 REQUIRED)
find_program(SYMBOLIZER llvm-symbolizer-19 REQUIRED)

cmake_path(GET FILE STEM name)
cmake_path(GET FILE FILENAME file_name)

set(Pmddb832_exports
  "1 PMAbortScan"
  "2 PMAcquireImage"
  "3 PMCloseScanner"
  "4 PMEject"
  "5 PMEnableOption"
  "6 PMFeed"
  "7 PMGetOptionStatus"
  "8 PMGetScanError"
  "9 PMGetScanPaperSize"
  "10 PMInitAcquire"
  "11 PMOpenScanner"
  "12 PMReset"
  "13 PMSetFocus"
  "14 PMSetScannerHardware"
  "15 DllMain")
set(Pmsim_exports "1 PmsimCreateDevice")
set(Pmsim_libraries KERNEL32.dll SHELL32.dll msvcrt.dll ole32.dll)
set(pmscan_libraries KERNEL32.dll SHELL32.dll msvcrt.dll ole32.dll)

# What the module calls beside the C library and Windows' kernel.
set(expected_module_imports
  "OLEAUT32.dll SysFreeString"
  "USER32.dll InvalidateRect"
  "USER32.dll UpdateWindow"
  "ole32.dll CoCreateInstance"
  "wiaservc.dll wiasFormatArgs")
# These, with what the runtime library calls.
set(expected_runtime_imports
  "KERNEL32.dll DeleteCriticalSection"
  "KERNEL32.dll EnterCriticalSection"
  "KERNEL32.dll GetLastError"
  "KERNEL32.dll GetProcessHeap"
  "KERNEL32.dll GetVersionExA"
  "KERNEL32.dll HeapAlloc"
  "KERNEL32.dll HeapFree"
  "KERNEL32.dll InitializeCriticalSection"
  "KERNEL32.dll LeaveCriticalSection"
  "KERNEL32.dll Sleep"
  "KERNEL32.dll TlsGetValue"
  "KERNEL32.dll VirtualProtect"
  "KERNEL32.dll VirtualQuery"
  "msvcrt.dll __iob_func"
  "msvcrt.dll _amsg_exit"
  "msvcrt.dll _initterm"
  "msvcrt.dll _lock"
  "msvcrt.dll _unlock"
  "msvcrt.dll abort"
  "msvcrt.dll calloc"
  "msvcrt.dll free"
  "msvcrt.dll fwrite"
  "msvcrt.dll malloc"
  "msvcrt.dll memcmp"
  "msvcrt.dll memcpy"
  "msvcrt.dll memmove"
  "msvcrt.dll memset"
  "msvcrt.dll realloc"
  "msvcrt.dll strlen"
  "msvcrt.dll strncmp"
  "msvcrt.dll vfprintf")

# Nothing else can be written to; a thread's own data are copied from .tls. Resources may be missing.
set(expected_sections
  ".text EXECUTE"
  ".rdata"
  ".buildid"
  ".data WRITE"
  ".pdata"
  ".tls WRITE"
  ".reloc")

# What may be called through pointers beside the exports: the entry point and what the objects of the
# toolchain name, of which the linker cannot tell what they call through pointers.
set(runtime_targets
  DllEntryPoint DllMainCRTStartup _GetPEImageBase __acrt_iob_func __gcc_register_frame __main
  __mingw_GetSectionCount __mingw_GetSectionForAddress __mingw_TLScallback _execute_onexit_table
  _initialize_onexit_table _pei386_runtime_relocator _register_onexit_function atexit fpreset)
# Ours: the virtual functions, and the row kernels, which are chosen by processor and by type.
string(CONCAT module_targets
  "^(__cxa_pure_virtual|pmddb832::("
  "(Checkcmd|ExtScanCmd|GeneralCmd|StdScanCmd)::(AbortScan|AcquireImage|Close|EnableOption"
  "|GetLastError|GetOptionStatus|GetScanPaperSize|InitAcquire|InitWorkArea|Open|SetFocusPos)"
  "|LocalType::(CheckAck|EjectPage|FeedPaper|Read|SendAck|SendEscCode|SendFSCode|Write|~LocalType)"
  "|Transport::ErrorCode"
  "|.anonymous namespace'::(Convert<pmddb832::|PaletteIndices)"
  "|[a-z0-9]+_rows::[A-Za-z0-9]+))$")

function(run output)
  execute_process(COMMAND ${ARGN} OUTPUT_VARIABLE text COMMAND_ERROR_IS_FATAL ANY)
  set(${output} "${text}" PARENT_SCOPE)
endfunction()

function(expect subject found expected)
  if(NOT found STREQUAL expected)
    message(FATAL_ERROR "${subject} of ${FILE}\n  expected: ${expected}\n  found:    ${found}")
  endif()
endfunction()

function(expect_match subject text regex)
  if(NOT text MATCHES "${regex}")
    message(FATAL_ERROR "${subject} of ${FILE}: nothing matches ${regex} in\n${text}")
  endif()
endfunction()

# The group of a regular expression.
function(take subject text regex value)
  expect_match("${subject}" "${text}" "${regex}")
  string(REGEX MATCH "${regex}" whole "${text}")
  set(${value} "${CMAKE_MATCH_1}" PARENT_SCOPE)
endfunction()

# Names by ordinal. Each has a name, so that nothing is exported by ordinal alone.
function(check_exports)
  run(text "${READOBJ}" --coff-exports "${FILE}")
  string(REGEX MATCHALL "Ordinal: [0-9]+\n +Name: [^\n]*" found "${text}")
  list(TRANSFORM found REPLACE "Ordinal: ([0-9]+)\n +Name: " "\\1 ")
  expect("Exports" "${found}" "${${name}_exports}")
endfunction()

# "LIBRARY FUNCTION" for each import.
function(read_imports imports)
  run(text "${READOBJ}" --coff-imports "${FILE}")
  if(text MATCHES "DelayImport")
    message(FATAL_ERROR "${FILE} has delayed imports")
  endif()
  string(REGEX MATCHALL "(Name|Symbol): [^ \n]+" rows "${text}")
  set(found "")
  foreach(row IN LISTS rows)
    string(REGEX REPLACE ".*: " "" name "${row}")
    if(row MATCHES "^Name")
      set(library "${name}")
    else()
      list(APPEND found "${library} ${name}")
    endif()
  endforeach()
  list(SORT found)
  set(${imports} "${found}" PARENT_SCOPE)
endfunction()

function(check_imports)
  read_imports(found)
  set(expected ${expected_module_imports} ${expected_runtime_imports})
  list(SORT expected)
  expect("Imports" "${found}" "${expected}")
endfunction()

function(check_module_imports)
  read_imports(found)
  list(FILTER found EXCLUDE REGEX "^(KERNEL32|msvcrt)\\.dll ")
  expect("Imports" "${found}" "${expected_module_imports}")
endfunction()

# Only their names.
function(check_libraries)
  read_imports(found)
  list(TRANSFORM found REPLACE " .*" "")
  list(REMOVE_DUPLICATES found)
  expect("Libraries" "${found}" "${${name}_libraries}")
endfunction()

function(check_version)
  run(text "${READOBJ}" --coff-resources "${FILE}")
  expect_match("Resources" "${text}" "Type: VERSIONINFO")
  file(STRINGS "${FILE}" texts ENCODING UTF-16LE LENGTH_MINIMUM 5)
  foreach(entry VS_VERSION_INFO "FileVersion;${VERSION}" "ProductVersion;${VERSION}"
                "OriginalFilename;${file_name}")
    string(FIND ";${texts};" ";${entry};" place)
    if(place EQUAL -1)
      message(FATAL_ERROR "The version resource does not hold ${entry}")
    endif()
  endforeach()
endfunction()

function(check_flags)
  run(text "${READOBJ}" --file-headers "${FILE}")
  expect_match("Machine" "${text}" "Machine: IMAGE_FILE_MACHINE_AMD64 ")
  expect_match("Addresses over 4 GB" "${text}" "IMAGE_DLL_CHARACTERISTICS_HIGH_ENTROPY_VA ")
  expect_match("Random base address" "${text}" "IMAGE_DLL_CHARACTERISTICS_DYNAMIC_BASE ")
  expect_match("Data is no code" "${text}" "IMAGE_DLL_CHARACTERISTICS_NX_COMPAT ")
  # Without relocations the base address stays where it was.
  expect_match("Relocations" "${text}" "BaseRelocationTableSize: 0x[1-9A-F]")
endfunction()

function(check_sections)
  run(text "${READOBJ}" --sections "${FILE}")
  string(REGEX MATCHALL "Name: [^ ]+|IMAGE_SCN_MEM_(WRITE|EXECUTE)" rows "${text}")
  set(found "")
  foreach(row IN LISTS rows)
    if(row MATCHES "Name: (.*)")
      list(APPEND found "${CMAKE_MATCH_1}")
    else()
      string(REGEX REPLACE "IMAGE_SCN_MEM_" "" right "${row}")
      string(APPEND found " ${right}")
    endif()
  endforeach()
  list(REMOVE_ITEM found .rsrc)
  expect("Sections" "${found}" "${expected_sections}")
endfunction()

function(check_guard)
  run(headers "${READOBJ}" --file-headers "${FILE}")
  expect_match("Guard of calls" "${headers}" "IMAGE_DLL_CHARACTERISTICS_GUARD_CF ")
  expect_match("Sum of the contents" "${headers}" "CheckSum: 0x[1-9A-F]")
  run(debug "${READOBJ}" --coff-debug-directory "${FILE}")
  expect_match("Shadow stack" "${debug}" "IMAGE_DLL_CHARACTERISTICS_EX_CET_COMPAT ")
  run(text "${READOBJ}" --coff-load-config "${FILE}")
  foreach(flag CF_INSTRUMENTED CF_FUNCTION_TABLE_PRESENT CF_LONGJUMP_TABLE_PRESENT)
    expect_match("Flags of the guard" "${text}" "${flag} ")
  endforeach()
  foreach(address SecurityCookie GuardCFCheckFunction GuardCFCheckDispatch GuardCFFunctionTable)
    expect_match("Load configuration" "${text}" "${address}: 0x[1-9A-F]")
  endforeach()
  expect_match("Load configuration" "${text}" "GuardCFFunctionCount: [1-9]")
endfunction()

# The functions of the guard's table by their names.
function(read_call_targets targets)
  run(text "${READOBJ}" --coff-load-config "${FILE}")
  string(REGEX REPLACE ".*GuardFidTable ." "" table "${text}")
  string(REGEX REPLACE "\n.\n.*" "" table "${table}")
  string(REGEX MATCHALL "0x[0-9A-F]+" addresses "${table}")
  run(text "${SYMBOLIZER}" "--obj=${FILE}" --no-inlines ${addresses})
  string(REGEX MATCHALL "[^\n]+\n[^\n]+\n\n" names "${text}")
  list(TRANSFORM names REPLACE "[(\n].*" "")
  set(${targets} "${names}" PARENT_SCOPE)
endfunction()

function(check_call_targets)
  read_call_targets(found)
  list(TRANSFORM Pmddb832_exports REPLACE "[0-9]+ " "" OUTPUT_VARIABLE expected)
  list(APPEND expected ${runtime_targets})
  list(SORT expected)
  set(others ${found})
  list(FILTER others EXCLUDE REGEX "${module_targets}")
  list(SORT others)
  expect("Targets of calls that are not the module's" "${others}" "${expected}")
endfunction()

# Of a library whose functions are too many to list.
function(check_guarded_exports)
  read_call_targets(found)
  foreach(export IN LISTS ${name}_exports)
    string(REGEX REPLACE "[0-9]+ " "" function "${export}")
    if(NOT function IN_LIST found)
      message(FATAL_ERROR "${FILE}: ${function} is exported and may not be called through pointers")
    endif()
  endforeach()
endfunction()

# The debugger finds the symbols by a name without a folder and knows them by an identity; with them,
# an export leads to its line.
function(check_symbols)
  cmake_path(REPLACE_EXTENSION FILE pdb OUTPUT_VARIABLE symbols)
  run(debug "${READOBJ}" --coff-debug-directory "${FILE}")
  run(summary "${PDBUTIL}" dump --summary "${symbols}")
  take("Debug directory" "${debug}" "PDBFileName: ([^\n]+)" file)
  expect("Name of the symbols" "${file}" "${name}.pdb")
  foreach(identity GUID Age)
    take("Debug directory" "${debug}" "PDB${identity}: ([^\n]+)" expected)
    take("Symbols" "${summary}" "${identity}: ([^\n]+)" found)
    expect("${identity} of the symbols" "${found}" "${expected}")
  endforeach()
  if(name STREQUAL Pmddb832)
    check_line_of_export(PMReset interface/exports.cpp)
  endif()
endfunction()

function(check_line_of_export function source)
  run(text "${READOBJ}" --coff-exports "${FILE}")
  take("Exports" "${text}" "Name: ${function}\n +RVA: (0x[0-9A-F]+)" address)
  run(text "${SYMBOLIZER}" "--obj=${FILE}" --relative-address --no-inlines ${address})
  string(REPLACE "\\" "/" text "${text}")
  take("Line of ${function}" "${text}" "^${function}\nC:/pmddb832/${source}:([0-9]+)" number)
  run(line sed -n "${number}p" "${CMAKE_CURRENT_LIST_DIR}/../../${source}")
  expect_match("Line of ${function}" "${line}" " ${function}\\(")
endfunction()

cmake_language(CALL check_${TABLE})
