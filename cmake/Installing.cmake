# How an installation is made. What has a fixed place by the program's contract goes there: its rules
# name absolute folders below EB_INSTALL_ROOT, where a staged build has it already. Everything else
# goes below the prefix: its rules name relative folders, so that `cmake --install --prefix` counts.
# DESTDIR stands in front of both.
#
# Components: program, tools and development.

set(CMAKE_INSTALL_DOCDIR share/doc/embedded-browser CACHE PATH "Documents, below the prefix")
include(GNUInstallDirs)
set(EB_DATADIR ${CMAKE_INSTALL_DATADIR}/embedded-browser)

# Before any other rule.
install(CODE [[
if(CMAKE_INSTALL_CONFIG_NAME MATCHES "^(Release|MinSizeRel)$")
  set(CMAKE_INSTALL_DO_STRIP TRUE)
endif()]] ALL_COMPONENTS)
