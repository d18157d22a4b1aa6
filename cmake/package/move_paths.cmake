# In the documents of a package, puts its own paths in place of those of the sources.
file(GLOB_RECURSE documents "$ENV{DESTDIR}${CMAKE_INSTALL_PREFIX}/docs/*.md")
foreach(document IN LISTS documents)
  file(READ "${document}" text)
  string(REPLACE "simulator/profiles" "profiles" text "${text}")
  file(WRITE "${document}" "${text}")
endforeach()
