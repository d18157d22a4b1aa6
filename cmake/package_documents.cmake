# What packages hold on every system besides programs.

# README.md, of which each package has its own, licence, documents and scanner files. In the
# documents the paths of the sources become those of the package.
function(install_documents readme)
  install(FILES "${readme}" "${PROJECT_SOURCE_DIR}/LICENCE" DESTINATION .)
  install(DIRECTORY "${PROJECT_SOURCE_DIR}/simulator/profiles" DESTINATION .)
  install(DIRECTORY "${PROJECT_SOURCE_DIR}/docs" DESTINATION .)
  install(SCRIPT "${PROJECT_SOURCE_DIR}/cmake/package/move_paths.cmake")
endfunction()

# install_licences(NAME FILE ...): the terms of what is part of the programs, as licences/NAME.txt,
# from the distribution's package of it.
function(install_licences)
  while(ARGN)
    list(POP_FRONT ARGN name file)
    install(FILES "${file}" DESTINATION licences RENAME "${name}.txt")
  endwhile()
endfunction()
