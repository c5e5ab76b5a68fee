# Lays an installation out below ROOT without a build: cmake -D EB_LAYOUT=mac -D ROOT=... -D
# PROGRAM=... -D HELPER=... -D MENU=... [-D FRAMEWORK=folder] -P lay_out.cmake. What the last four
# name may be stand-ins.

get_filename_component(packaging "${CMAKE_CURRENT_LIST_DIR}" ABSOLUTE)
include("${packaging}/../cmake/InstallLayout.cmake")
set(EB_INSTALL_ROOT "")
eb_layout(files PACKAGING "${packaging}" GENERATED "${ROOT}.generated" VERSION 0.0.0
  MENU "${MENU}" HELPER "${HELPER}")
list(APPEND files "${PROGRAM}|${EB_PROGRAM_BINARIES}|EmbeddedBrowser")
foreach(file IN LISTS files)
  string(REPLACE "|" ";" parts "${file}")
  list(GET parts 0 source)
  list(GET parts 1 folder)
  list(GET parts 2 name)
  file(MAKE_DIRECTORY "${ROOT}${folder}")
  configure_file("${source}" "${ROOT}${folder}/${name}" COPYONLY)
endforeach()
if(FRAMEWORK)
  file(COPY "${FRAMEWORK}/" DESTINATION "${ROOT}${EB_FRAMEWORK_DIR}")
endif()
file(REMOVE_RECURSE "${ROOT}.generated")
