# Debian packages: `cpack` in a build whose prefix is /usr, as packaging/deb/make has it. They are made of
# the installation's components, and of what only a package has: the component deb, and debDevelopment.
#
# Included last, once all rules for installing are known.

set(deb_sources ${CMAKE_CURRENT_LIST_DIR})
set(EB_MAINTAINER "EmbeddedBrowser maintainers <maintainers@embedded-browser.invalid>" CACHE STRING
  "Who answers for the Debian packages: a name, and an address in angle brackets")

# eb_deb_documents(PACKAGE COMPONENT)
function(eb_deb_documents package component)
  set(made "${CMAKE_CURRENT_BINARY_DIR}/deb/${package}")
  set(EB_DEB_PACKAGE ${package})
  configure_file(${deb_sources}/changelog.in "${made}/changelog" @ONLY)
  install(FILES "${made}/changelog" ${deb_sources}/copyright
    DESTINATION ${CMAKE_INSTALL_DATADIR}/doc/${package} COMPONENT ${component} EXCLUDE_FROM_ALL)
endfunction()
eb_deb_documents(embedded-browser deb)
eb_deb_documents(libebstarter-dev debDevelopment)
install(FILES ${deb_sources}/lintian-overrides DESTINATION ${CMAKE_INSTALL_DATADIR}/lintian/overrides
  RENAME embedded-browser COMPONENT deb EXCLUDE_FROM_ALL)

set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_DIRECTORY "${CMAKE_BINARY_DIR}")
set(CPACK_PACKAGE_VENDOR EmbeddedBrowser)
set(CPACK_DEBIAN_PACKAGE_MAINTAINER "${EB_MAINTAINER}")
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
# The fixed places are outside of the prefix.
set(CPACK_SET_DESTDIR ON)
set(CPACK_PRE_BUILD_SCRIPTS ${deb_sources}/finish.cmake)

set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_COMPONENTS_GROUPING ONE_PER_GROUP)
set(CPACK_COMPONENTS_ALL program tools deb development debDevelopment)
foreach(component program tools deb)
  string(TOUPPER ${component} name)
  set(CPACK_COMPONENT_${name}_GROUP product)
endforeach()
foreach(component DEVELOPMENT DEBDEVELOPMENT)
  set(CPACK_COMPONENT_${component}_GROUP library)
endforeach()

set(CPACK_DEBIAN_PRODUCT_PACKAGE_NAME embedded-browser)
set(CPACK_DEBIAN_PRODUCT_PACKAGE_SECTION net)
set(CPACK_COMPONENT_PRODUCT_DESCRIPTION
"browser window for the web steps of a VPN sign-in
A VPN client starts this helper whenever one step of signing in or out must
run in a real browser: a SAML sign-in, a gateway's own sign-in page, a SAML
single logout. It opens one window for that step, watches addresses and
cookies, and hands the result back.
.
With it come a reference caller, a doctor that finds what keeps a sign-in
from working, and a gateway in a box to try callers against.")
# What is linked is computed, GNUstep's back end with it. The browser is started.
set(CPACK_DEBIAN_PRODUCT_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PRODUCT_PACKAGE_DEPENDS
  "chromium | google-chrome-stable | microsoft-edge-stable | brave-browser")
set(CPACK_DEBIAN_PRODUCT_PACKAGE_RECOMMENDS "chromium-l10n")
set(CPACK_DEBIAN_PRODUCT_PACKAGE_CONTROL_EXTRA ${deb_sources}/postrm)
set(CPACK_DEBIAN_PRODUCT_PACKAGE_CONTROL_STRICT_PERMISSION ON)

set(CPACK_DEBIAN_LIBRARY_PACKAGE_NAME libebstarter-dev)
set(CPACK_DEBIAN_LIBRARY_PACKAGE_SECTION libdevel)
set(CPACK_COMPONENT_LIBRARY_DESCRIPTION
"library that starts EmbeddedBrowser (development files)
Header and static library for programs that run one web step of a VPN
sign-in through EmbeddedBrowser: they start it, keep the time limit, and
judge its result. For pkg-config and for CMake.")
set(CPACK_DEBIAN_LIBRARY_PACKAGE_RECOMMENDS "embedded-browser (>= ${PROJECT_VERSION})")

include(CPack)
