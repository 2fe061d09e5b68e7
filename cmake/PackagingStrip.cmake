# Run by cpack on the staged files before it builds the package: strips the programs as
# Debian's dh_strip does, dropping the compiler's .comment and .note sections as well, which a
# plain strip keeps.
file(GLOB programs "${CPACK_TEMPORARY_DIRECTORY}/usr/bin/*")
foreach(program IN LISTS programs)
    execute_process(
        COMMAND ${CPACK_LUMAREX_STRIP} --remove-section=.comment --remove-section=.note
                --strip-unneeded ${program}
        RESULT_VARIABLE status)
    if(NOT status EQUAL 0)
        message(FATAL_ERROR "strip failed on ${program}: ${status}")
    endif()
endforeach()
