# An @catch in an Objective-C++ file compiles and crashes when it is reached: fails when the sources
# below ROOT hold one. To be run with cmake -D ROOT=... -P.

set(forbidden "@catch|NS_DURING|NS_HANDLER")
set(found)
set(count 0)
foreach(folder IN ITEMS GUI libs platform cef tools testing tests bench)
  file(GLOB_RECURSE files ${ROOT}/${folder}/*.mm)
  foreach(file IN LISTS files)
    file(STRINGS ${file} lines REGEX "${forbidden}")
    foreach(line IN LISTS lines)
      list(APPEND found "${file}: ${line}")
    endforeach()
    math(EXPR count "${count} + 1")
  endforeach()
endforeach()

if(NOT count)
  message(FATAL_ERROR "no Objective-C++ files below ${ROOT}")
endif()
if(found)
  list(JOIN found "\n" found)
  message(FATAL_ERROR "use platform/CatchThrown.h instead of:\n${found}")
endif()
