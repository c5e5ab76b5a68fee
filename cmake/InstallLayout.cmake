# The one description of an installation: which file goes where, laid out as macOS and CEF look for
# it or as GNUstep does. Read by the build, and by packaging/lay_out.cmake without one.
#
# Takes EB_LAYOUT: mac or gnustep. Every folder begins with a slash and is below the install root.

set(EB_PRODUCT_NAME "Corvane Secure")
# What X11 desktops tell its windows by.
set(EB_WINDOW_CLASS "CorvaneSecure")
set(EB_PRODUCT_SUPPORT "/Library/Application Support/Corvane Secure")
set(EB_FRAMEWORK_DIR "${EB_PRODUCT_SUPPORT}/Chromium Embedded Framework.framework")
set(EB_LOG_DIR "/var/log/Corvane Secure/Logging")
# Desktops look there; an installation has it below its prefix.
set(EB_DESKTOP_DIR "/usr/share")
set(EB_APP_BUNDLE "/Applications/Corvane Secure.app")
set(EB_PROGRAM_DIR "${EB_APP_BUNDLE}/Contents/Helpers/EmbeddedBrowser.app")

if(EB_LAYOUT STREQUAL "mac")
  set(EB_PROGRAM_BINARIES "${EB_PROGRAM_DIR}/Contents/MacOS")
  set(EB_PROGRAM_RESOURCES "${EB_PROGRAM_DIR}/Contents/Resources")
else()
  set(EB_PROGRAM_BINARIES "${EB_PROGRAM_DIR}")
  set(EB_PROGRAM_RESOURCES "${EB_PROGRAM_DIR}/Resources")
endif()

# What the bundles' descriptions share.
set(EB_BUNDLE_IDENTIFIER "com.halden.corvane.embeddedbrowser")
include("${CMAKE_CURRENT_LIST_DIR}/MacTarget.cmake")

# eb_layout(RESULT PACKAGING folder GENERATED folder VERSION text [MENU file HELPER file])
# Puts one "source|folder|name" into RESULT for every file but the main program and the framework.
# PACKAGING is the project's folder of that name, GENERATED takes what is made here. A Mac needs the
# compiled main menu and the program of CEF's child processes besides.
function(eb_layout result)
  cmake_parse_arguments(ARG "" "PACKAGING;GENERATED;VERSION;MENU;HELPER" "" ${ARGN})
  set(EB_VERSION ${ARG_VERSION})
  set(files)

  configure_file("${ARG_PACKAGING}/stage/access.ini.in" "${ARG_GENERATED}/access.ini" @ONLY)
  list(APPEND files "${ARG_GENERATED}/access.ini|${EB_APP_BUNDLE}/Contents/Plugins/VELD|access.ini")
  foreach(language EN DE ES FR)
    foreach(catalog CorvaneResource MessageCatalogCorvaneUI)
      set(name "${catalog}_${language}.txt")
      list(APPEND files "${ARG_PACKAGING}/stage/${name}|${EB_APP_BUNDLE}/Contents/Resources|${name}")
    endforeach()
  endforeach()
  foreach(catalog BrandingResourceCatalog BrandingMessageCatalog)
    set(name "${catalog}_EN.txt")
    list(APPEND files
      "${ARG_PACKAGING}/stage/branding/${name}|${EB_PRODUCT_SUPPORT}/CorvaneBranding|${name}")
  endforeach()
  foreach(language English French German Spanish)
    set(name "${language}.lproj/InfoPlist.strings")
    list(APPEND files "${ARG_PACKAGING}/stage/${name}|${EB_PROGRAM_RESOURCES}/${language}.lproj|InfoPlist.strings")
  endforeach()

  if(EB_LAYOUT STREQUAL "mac")
    set(EB_BUNDLE_EXECUTABLE EmbeddedBrowser)
    configure_file("${ARG_PACKAGING}/mac/Info.plist.in" "${ARG_GENERATED}/Info.plist" @ONLY)
    list(APPEND files
      "${ARG_GENERATED}/Info.plist|${EB_PROGRAM_DIR}/Contents|Info.plist"
      "${ARG_PACKAGING}/mac/EmbeddedBrowser.icns|${EB_PROGRAM_RESOURCES}|EmbeddedBrowser.icns"
      "${ARG_MENU}|${EB_PROGRAM_RESOURCES}|MainMenu.nib")

    # CEF looks for them in the outermost bundle around the program, under the program's name.
    foreach(kind ".helper" ".helper.gpu" ".helper.plugin" ".helper.renderer")
      string(REPLACE ".helper.gpu" " Helper (GPU)" name "${kind}")
      string(REPLACE ".helper.plugin" " Helper (Plugin)" name "${name}")
      string(REPLACE ".helper.renderer" " Helper (Renderer)" name "${name}")
      string(REPLACE ".helper" " Helper" name "${name}")
      set(EB_BUNDLE_EXECUTABLE "EmbeddedBrowser${name}")
      set(EB_HELPER_IDENTIFIER "${EB_BUNDLE_IDENTIFIER}${kind}")
      set(plist "${ARG_GENERATED}/${EB_HELPER_IDENTIFIER}.plist")
      configure_file("${ARG_PACKAGING}/mac/Helper-Info.plist.in" "${plist}" @ONLY)
      set(contents "${EB_APP_BUNDLE}/Contents/Frameworks/${EB_BUNDLE_EXECUTABLE}.app/Contents")
      list(APPEND files
        "${plist}|${contents}|Info.plist"
        "${ARG_HELPER}|${contents}/MacOS|${EB_BUNDLE_EXECUTABLE}")
    endforeach()
  else()
    list(APPEND files "${ARG_PACKAGING}/stage/MainMenu.xib|${EB_PROGRAM_RESOURCES}|MainMenu.xib")

    # For the windows, and where desktops look.
    set(share "${EB_DESKTOP_DIR}")
    configure_file("${ARG_PACKAGING}/stage/embedded-browser.desktop.in"
      "${ARG_GENERATED}/embedded-browser.desktop" @ONLY)
    list(APPEND files
      "${ARG_GENERATED}/embedded-browser.desktop|${share}/applications|embedded-browser.desktop"
      "${ARG_PACKAGING}/icons/embedded-browser.svg|${share}/icons/hicolor/scalable/apps|embedded-browser.svg")
    foreach(size 16 32 48 128 256)
      set(icon "embedded-browser-${size}.png")
      list(APPEND files
        "${ARG_PACKAGING}/icons/${icon}|${EB_PROGRAM_RESOURCES}|${icon}"
        "${ARG_PACKAGING}/icons/${icon}|${share}/icons/hicolor/${size}x${size}/apps|embedded-browser.png")
    endforeach()
  endif()
  set(${result} "${files}" PARENT_SCOPE)
endfunction()
