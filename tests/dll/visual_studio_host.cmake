# The import library is one for Visual Studio's linker too.
find_program(VISUAL_STUDIO_LINKER lld-link-19 REQUIRED)
set(host "${CMAKE_BINARY_DIR}/visual_studio_host.exe")
set(object "${CMAKE_CURRENT_BINARY_DIR}/visual_studio_host.obj")
add_custom_command(OUTPUT "${host}"
  COMMAND "${CMAKE_C_COMPILER}" --target=x86_64-pc-windows-msvc -std=c17 -Wall -Wextra -Werror
    -ffreestanding -nostdlibinc "-I${PROJECT_SOURCE_DIR}/interface"
    -c "${CMAKE_CURRENT_SOURCE_DIR}/visual_studio_host.c" -o "${object}"
  COMMAND "${VISUAL_STUDIO_LINKER}" /nologo /nodefaultlib /entry:Main /subsystem:console
    "/out:${host}" "${object}" "$<TARGET_LINKER_FILE:Pmddb832>"
  DEPENDS visual_studio_host.c "${PROJECT_SOURCE_DIR}/interface/pmddb832.h" Pmddb832
  VERBATIM)
add_custom_target(visual_studio_host ALL DEPENDS "${host}")
add_test(NAME visual_studio_host COMMAND ${CMAKE_CROSSCOMPILING_EMULATOR} "${host}")
