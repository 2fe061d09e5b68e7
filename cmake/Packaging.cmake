# A Debian package of the installed files; its dependencies come from the binaries themselves.
set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME lumarex-config)
set(CPACK_PACKAGE_VENDOR "lumarex-config developers")
set(CPACK_PACKAGE_CONTACT "lumarex-config developers <dev@lumarex-config.example>")
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "Configuration editor for the Lumarex 2.0 thermal-camera recorder")
# Debian wants the lines of the long description within 80 columns.
set(CPACK_DEBIAN_PACKAGE_DESCRIPTION
    "Edits, checks and scripts the LXCONFIG.BIN configuration file of the\n Lumarex 2.0 recorder: the editor lumarex-config and the command-line\n companion lxconfig.")
set(CPACK_DEBIAN_PACKAGE_SECTION utils)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
# lxconfig report --pdf prints through a headless Chromium when one is installed; without it the
# sheet is still written as HTML, so the browser is a suggestion, not a dependency.
set(CPACK_DEBIAN_PACKAGE_SUGGESTS chromium)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_STRIP_FILES ON)
# A cross build's package is of the target's architecture (cpack would name the build machine's).
if(LUMAREX_DEB_ARCHITECTURE)
    set(CPACK_DEBIAN_PACKAGE_ARCHITECTURE ${LUMAREX_DEB_ARCHITECTURE})
endif()
# Read by the scripts below, which run inside cpack.
set(CPACK_LUMAREX_STRIP "${CMAKE_STRIP}")
# Without dpkg-shlibdeps CPack would quietly build a package without any Depends.
set(CPACK_PROJECT_CONFIG_FILE ${CMAKE_CURRENT_LIST_DIR}/PackagingRequirements.cmake)
set(CPACK_PRE_BUILD_SCRIPTS ${CMAKE_CURRENT_LIST_DIR}/PackagingStrip.cmake)
include(CPack)
