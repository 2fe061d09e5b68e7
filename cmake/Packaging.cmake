# A Debian package of the installed files; its dependencies come from the binaries themselves.
set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME lumarex-config)
set(CPACK_PACKAGE_VENDOR "lumarex-config developers")
set(CPACK_PACKAGE_CONTACT "lumarex-config developers <dev@lumarex-config.example>")
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "Configuration editor for the Lumarex 2.0 thermal-camera recorder")
set(CPACK_DEBIAN_PACKAGE_DESCRIPTION
    "Edits, checks and scripts the LXCONFIG.BIN configuration file of the Lumarex 2.0\n recorder: the editor lumarex-config and the command-line companion lxconfig.")
set(CPACK_DEBIAN_PACKAGE_SECTION utils)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_STRIP_FILES ON)
include(CPack)
