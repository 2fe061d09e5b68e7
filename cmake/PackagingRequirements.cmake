# Run by cpack before it builds a package: a Debian package needs dpkg-shlibdeps (dpkg-dev) to
# compute its Depends, and fails here rather than being built without them.
if(CPACK_GENERATOR STREQUAL "DEB")
    if(POLICY CMP0109)
        cmake_policy(SET CMP0109 NEW) # a program must be executable, as CPack's own search wants
    endif()
    find_program(LUMAREX_DPKG_SHLIBDEPS dpkg-shlibdeps)
    if(NOT LUMAREX_DPKG_SHLIBDEPS)
        message(FATAL_ERROR "dpkg-shlibdeps not found (package dpkg-dev): the Debian package "
                            "would have no Depends. Install it: scripts/install-deps.sh test")
    endif()
endif()
