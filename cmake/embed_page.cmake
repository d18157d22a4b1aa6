# Writes a C++ source with the files of a page as texts, so that a program holds them:
#
#   cmake -D FOLDER=DIR -D OUTPUT=FILE.cpp -P embed_page.cmake
#
# The scripts become one, in the order of their names here.
set(scripts data.js summary.js timeline.js timeline_input.js conversation.js search.js pages.js report.js)

function(append_text name)
  set(text "")
  foreach(file IN LISTS ARGN)
    file(READ "${FOLDER}/${file}" content)
    string(APPEND text "${content}")
  endforeach()
  file(APPEND "${OUTPUT}" "const std::string_view ${name} = R\"embedded(${text})embedded\";\n\n")
endfunction()

file(WRITE "${OUTPUT}" "#include \"pmscan/report_page/page_files.h\"\n\n"
  "namespace pmscan::page_files {\n\n")
append_text(kPage report.html)
append_text(kStyle report.css)
append_text(kScript ${scripts})
file(APPEND "${OUTPUT}" "}  // namespace pmscan::page_files\n")
