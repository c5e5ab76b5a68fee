# AppKit and Foundation off macOS: the imported targets GNUstep::Base and GNUstep::Gui.
#
# gnustep-config mixes what its headers need with its own taste (-g, -O2, -Wall, -MMD, folders below
# HOME). Only what changes the meaning of Objective-C code is kept.

find_program(GNUstep_CONFIG gnustep-config)
find_path(GNUstep_INCLUDE_DIR Foundation/NSObject.h PATH_SUFFIXES GNUstep)
find_library(GNUstep_BASE_LIBRARY gnustep-base)
find_library(GNUstep_GUI_LIBRARY gnustep-gui)
mark_as_advanced(GNUstep_CONFIG GNUstep_INCLUDE_DIR GNUstep_BASE_LIBRARY GNUstep_GUI_LIBRARY)

include(FindPackageHandleStandardArgs)
find_package_handle_standard_args(GNUstep
  REQUIRED_VARS GNUstep_GUI_LIBRARY GNUstep_BASE_LIBRARY GNUstep_INCLUDE_DIR GNUstep_CONFIG
  REASON_FAILURE_MESSAGE "install libgnustep-gui-dev and gnustep-make")

if(GNUstep_FOUND AND NOT TARGET GNUstep::Base)
  find_package(Threads REQUIRED)
  execute_process(COMMAND ${GNUstep_CONFIG} --objc-flags
    OUTPUT_VARIABLE flags OUTPUT_STRIP_TRAILING_WHITESPACE)
  separate_arguments(flags UNIX_COMMAND "${flags}")
  set(definitions)
  set(options)
  foreach(flag IN LISTS flags)
    if(flag MATCHES "^-D(GSWARN|GSDIAGNOSE)$")
      continue()
    elseif(flag MATCHES "^-D(.+)$")
      list(APPEND definitions ${CMAKE_MATCH_1})
    elseif(flag MATCHES "^-f(exceptions|objc-.*|constant-string-class=.*|no-strict-aliasing)$")
      list(APPEND options ${flag})
    endif()
  endforeach()
  list(REMOVE_DUPLICATES definitions)
  list(REMOVE_DUPLICATES options)

  # Included as system headers, which also silences the warnings that they raise. The
  # Objective-C runtime goes in by its plain name: it lives in the compiler's own folder.
  add_library(GNUstep::Base INTERFACE IMPORTED)
  set_target_properties(GNUstep::Base PROPERTIES
    INTERFACE_INCLUDE_DIRECTORIES "${GNUstep_INCLUDE_DIR}"
    INTERFACE_COMPILE_DEFINITIONS "$<$<COMPILE_LANGUAGE:OBJC,OBJCXX>:${definitions}>"
    INTERFACE_COMPILE_OPTIONS "$<$<COMPILE_LANGUAGE:OBJC,OBJCXX>:${options}>"
    INTERFACE_LINK_LIBRARIES "${GNUstep_BASE_LIBRARY};objc;Threads::Threads;m")
  add_library(GNUstep::Gui INTERFACE IMPORTED)
  set_target_properties(GNUstep::Gui PROPERTIES
    INTERFACE_LINK_LIBRARIES "${GNUstep_GUI_LIBRARY};GNUstep::Base")
endif()
