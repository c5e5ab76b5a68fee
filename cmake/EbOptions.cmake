# Compile options that every target of the project shares, and the folder that receives what is
# built for an installation.

set(CMAKE_POSITION_INDEPENDENT_CODE ON)
find_package(Threads REQUIRED)

find_program(EB_CCACHE ccache)
if(EB_CCACHE AND PROJECT_IS_TOP_LEVEL AND NOT CMAKE_CXX_COMPILER_LAUNCHER)
  foreach(language C CXX OBJC OBJCXX)
    set(CMAKE_${language}_COMPILER_LAUNCHER ${EB_CCACHE})
  endforeach()
endif()

# RapidJSON's headers: packages of it differ in the variables that they set.
find_package(RapidJSON QUIET)
find_path(EB_RAPIDJSON_INCLUDE_DIR rapidjson/document.h
  HINTS ${RAPIDJSON_INCLUDE_DIRS} ${RapidJSON_INCLUDE_DIRS} REQUIRED)
add_library(ebJson INTERFACE)
target_include_directories(ebJson SYSTEM INTERFACE ${EB_RAPIDJSON_INCLUDE_DIR})

# What only tests use is compiled without optimisation, which halves the time that takes.
set(EB_TEST_OPTIONS $<$<CONFIG:RelWithDebInfo>:-O0>)

# Where built files are laid out as they will be installed.
if(EB_INSTALL_ROOT)
  set(EB_STAGE ${EB_INSTALL_ROOT})
else()
  set(EB_STAGE ${CMAKE_CURRENT_BINARY_DIR}/package-root)
endif()
if(APPLE)
  set(EB_LAYOUT mac)
else()
  set(EB_LAYOUT gnustep)
endif()
include(InstallLayout)

add_library(ebOptions INTERFACE)
target_compile_features(ebOptions INTERFACE cxx_std_17)
set_property(TARGET ebOptions PROPERTY INTERFACE_INCLUDE_DIRECTORIES ${PROJECT_SOURCE_DIR})
target_compile_options(ebOptions INTERFACE -Wall -Wextra $<$<BOOL:${EB_WERROR}>:-Werror>)
# A release does not tell where it was built, so that it is the same wherever that was.
target_compile_options(ebOptions INTERFACE
  $<$<CONFIG:Release>:-ffile-prefix-map=${PROJECT_SOURCE_DIR}=.;-ffile-prefix-map=${CMAKE_BINARY_DIR}=.>)
if(EB_SANITIZE)
  target_compile_options(ebOptions INTERFACE -fsanitize=${EB_SANITIZE} -fno-omit-frame-pointer)
  target_link_options(ebOptions INTERFACE -fsanitize=${EB_SANITIZE})
else()
  include(Hardening)
endif()
if(EB_FUZZ)
  # Objective-C is g++'s, and without them.
  set(sanitizers address,undefined,float-cast-overflow)
  target_compile_options(ebOptions INTERFACE
    "$<$<COMPILE_LANGUAGE:C,CXX>:-fsanitize=fuzzer-no-link,${sanitizers};-fno-sanitize-recover=all;-fsanitize-ignorelist=${PROJECT_SOURCE_DIR}/fuzz/not_ours.txt;-fno-omit-frame-pointer>")
  target_link_options(ebOptions INTERFACE -fsanitize=${sanitizers})
endif()
set(CMAKE_CXX_STANDARD 17)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_OBJCXX_STANDARD 17)
set(CMAKE_OBJCXX_EXTENSIONS OFF)
