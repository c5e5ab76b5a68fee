# Which Macs the product is for: set once, for the wrapper of the CEF distribution, for everything of
# this project and for the bundles' descriptions. CEF 80 exists for one architecture only; others run
# it translated. The starter needs 10.15 for std::filesystem.
set(EB_MINIMUM_MACOS "10.15")
if(NOT DEFINED CMAKE_OSX_DEPLOYMENT_TARGET)
  set(CMAKE_OSX_DEPLOYMENT_TARGET ${EB_MINIMUM_MACOS} CACHE STRING "The oldest macOS to run on")
endif()
if(NOT DEFINED CMAKE_OSX_ARCHITECTURES)
  set(CMAKE_OSX_ARCHITECTURES x86_64 CACHE STRING "What a Mac build is compiled for")
endif()
