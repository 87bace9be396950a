# SPDX-License-Identifier: MIT

set(SERDES_LSAN_SUPPRESSIONS ${CMAKE_SOURCE_DIR}/tests/lsan.supp)

# serdes_add_test(<name> SOURCES <file>... [LIBS <target>...])
# One Qt Test program, registered with CTest and run headless.
function(serdes_add_test name)
    cmake_parse_arguments(ARG "" "" "SOURCES;LIBS" ${ARGN})
    add_executable(${name} ${ARG_SOURCES})
    target_link_libraries(${name} PRIVATE Qt5::Test ${ARG_LIBS})
    target_include_directories(${name} PRIVATE ${CMAKE_SOURCE_DIR}/tests)
    target_compile_definitions(${name} PRIVATE
        SERDES_STAGE_DIR="${SERDES_STAGE_DIR}"
        SERDES_TEST_DATA="${CMAKE_CURRENT_SOURCE_DIR}/data")
    # Each program runs in a folder of its own: the generator writes its
    # parameter file into the working directory, and programs run in parallel.
    set(workdir ${CMAKE_CURRENT_BINARY_DIR}/${name}.run)
    file(MAKE_DIRECTORY ${workdir})
    add_test(NAME ${name} COMMAND ${name} WORKING_DIRECTORY ${workdir})
    set_tests_properties(${name} PROPERTIES
        TIMEOUT 300
        ENVIRONMENT "QT_QPA_PLATFORM=offscreen;LSAN_OPTIONS=suppressions=${SERDES_LSAN_SUPPRESSIONS};ASAN_OPTIONS=detect_leaks=1:abort_on_error=0;UBSAN_OPTIONS=print_stacktrace=1:halt_on_error=1")
endfunction()
