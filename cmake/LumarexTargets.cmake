# Build settings shared by every target of the project, carried by interface targets. The
# options themselves are declared in the root CMakeLists.txt.

# The language level and the warnings; the build-time generator links only this, so that it
# runs during the build even when the project is built with sanitizers.
add_library(lumarex_warnings INTERFACE)
target_compile_features(lumarex_warnings INTERFACE cxx_std_17)
set_target_properties(lumarex_warnings PROPERTIES INTERFACE_CXX_EXTENSIONS OFF)
target_compile_options(lumarex_warnings INTERFACE
    -Wall -Wextra -Wold-style-cast -Woverloaded-virtual -Wnon-virtual-dtor)
target_compile_definitions(lumarex_warnings INTERFACE
    QT_DEPRECATED_WARNINGS)
if(LUMAREX_WERROR)
    target_compile_options(lumarex_warnings INTERFACE -Werror)
endif()

add_library(lumarex_options INTERFACE)
target_link_libraries(lumarex_options INTERFACE lumarex_warnings)

# lumarex_add_test(NAME <name> SOURCES <files...> LIBRARIES <targets...>)
# One QTest executable per subject, run by CTest on the offscreen platform.
function(lumarex_add_test)
    cmake_parse_arguments(ARG "" "NAME" "SOURCES;LIBRARIES" ${ARGN})
    add_executable(${ARG_NAME} ${ARG_SOURCES})
    set_target_properties(${ARG_NAME} PROPERTIES AUTOMOC ON)
    target_link_libraries(${ARG_NAME} PRIVATE lumarex_options Qt5::Test ${ARG_LIBRARIES})
    add_test(NAME ${ARG_NAME} COMMAND ${ARG_NAME})
    set_tests_properties(${ARG_NAME} PROPERTIES ENVIRONMENT "QT_QPA_PLATFORM=offscreen")
endfunction()

# A build checked at run time by the compiler's sanitizers, e.g. -DLUMAREX_SANITIZE=address,undefined.
# Every report ends the process, so a test that provokes one fails.
if(LUMAREX_SANITIZE)
    target_compile_options(lumarex_options INTERFACE
        -fsanitize=${LUMAREX_SANITIZE} -fno-sanitize-recover=all -fno-omit-frame-pointer)
    target_link_options(lumarex_options INTERFACE -fsanitize=${LUMAREX_SANITIZE})
endif()
