# The hardening flags Debian builds its own packages with (fortify, stack protector, format
# checks, full RELRO, BIND_NOW), taken from dpkg-buildflags for the release build types.
#
# Only the hardening feature is taken: the flags dpkg-buildflags gives with every hardening
# feature on, minus those it gives with them off. Optimisation and debug flags stay the build
# type's, and the reproducible-build path mapping stays out so that debuggers, sanitizers and
# QTest still name the real source files. Debug and sanitizer builds get nothing, as they want
# their own instrumentation. Without dpkg-buildflags (not a Debian system) nothing changes.

find_program(DPKG_BUILDFLAGS_EXECUTABLE dpkg-buildflags)

# lumarex_hardening_flags(<variable> <FLAGS-NAME>): the tokens of FLAGS-NAME that only
# hardening=+all adds, as a list.
function(lumarex_hardening_flags variable name)
    foreach(setting IN ITEMS on off)
        if(setting STREQUAL on)
            set(options "hardening=+all")
        else()
            # PIE is the compiler's default on Debian; leaving it on keeps "off" free of the
            # flags that would turn it off.
            set(options "hardening=-all,+pie")
        endif()
        execute_process(
            COMMAND ${CMAKE_COMMAND} -E env DEB_BUILD_MAINT_OPTIONS=${options}
                    ${host_architecture} ${DPKG_BUILDFLAGS_EXECUTABLE} --get ${name}
            OUTPUT_VARIABLE flags OUTPUT_STRIP_TRAILING_WHITESPACE
            RESULT_VARIABLE status)
        if(NOT status EQUAL 0)
            message(FATAL_ERROR "dpkg-buildflags --get ${name} failed: ${status}")
        endif()
        separate_arguments(tokens_${setting} UNIX_COMMAND "${flags}")
    endforeach()
    if(tokens_off)
        list(REMOVE_ITEM tokens_on ${tokens_off})
    endif()
    set(${variable} ${tokens_on} PARENT_SCOPE)
endfunction()

# A cross build takes the flags Debian gives the target architecture (arm64 has its own).
set(host_architecture)
if(CMAKE_CROSSCOMPILING AND CMAKE_LIBRARY_ARCHITECTURE)
    find_program(DPKG_ARCHITECTURE_EXECUTABLE dpkg-architecture)
    if(DPKG_ARCHITECTURE_EXECUTABLE)
        execute_process(
            COMMAND ${DPKG_ARCHITECTURE_EXECUTABLE} --host-type ${CMAKE_LIBRARY_ARCHITECTURE}
                    --query DEB_HOST_ARCH
            OUTPUT_VARIABLE LUMAREX_DEB_ARCHITECTURE OUTPUT_STRIP_TRAILING_WHITESPACE
            ERROR_QUIET)
        if(LUMAREX_DEB_ARCHITECTURE)
            set(host_architecture DEB_HOST_ARCH=${LUMAREX_DEB_ARCHITECTURE})
        endif()
    endif()
endif()

if(DPKG_BUILDFLAGS_EXECUTABLE AND NOT LUMAREX_SANITIZE)
    lumarex_hardening_flags(hardening_cppflags CPPFLAGS)
    lumarex_hardening_flags(hardening_cxxflags CXXFLAGS)
    lumarex_hardening_flags(hardening_ldflags LDFLAGS)
    message(STATUS "Hardening for release builds: "
                   "${hardening_cppflags} ${hardening_cxxflags} ${hardening_ldflags}")
    set(release_build $<OR:$<CONFIG:Release>,$<CONFIG:RelWithDebInfo>,$<CONFIG:MinSizeRel>>)
    target_compile_options(lumarex_options INTERFACE
        "$<${release_build}:${hardening_cppflags};${hardening_cxxflags}>")
    target_link_options(lumarex_options INTERFACE "$<${release_build}:${hardening_ldflags}>")
endif()
