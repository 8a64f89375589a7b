# One target per folder. A target sees the headers of the folders that it links and no others: each
# library's include directory holds nothing but a link to its own folder, so an include that the
# dependencies do not allow does not build.

# velmoranth_library(NAME FOLDER <path from the source root> [AS <path in includes>]
#                    SOURCES ... [ALONE sources...] [PUBLIC targets...] [PRIVATE targets...])
# Headers are included as "<AS>/file.h"; AS is FOLDER unless given (the engine leaves "src/" out).
# ALONE are those of the sources that cannot be compiled together with others where VELMORANTH_JOIN is
# on, since their unnamed namespaces share a name with a neighbour's.
function(velmoranth_library name)
    cmake_parse_arguments(ARG "" "FOLDER;AS" "SOURCES;ALONE;PUBLIC;PRIVATE" ${ARGN})
    if(NOT ARG_AS)
        set(ARG_AS "${ARG_FOLDER}")
    endif()
    string(REPLACE "/" "_" key "${ARG_AS}")
    set(include_root "${PROJECT_BINARY_DIR}/include/${key}")
    get_filename_component(parent "${include_root}/${ARG_AS}" DIRECTORY)
    file(MAKE_DIRECTORY "${parent}")
    file(CREATE_LINK "${PROJECT_SOURCE_DIR}/${ARG_FOLDER}" "${include_root}/${ARG_AS}" SYMBOLIC)

    add_library(${name} STATIC ${ARG_SOURCES})
    target_include_directories(${name} PUBLIC "$<BUILD_INTERFACE:${include_root}>")
    target_link_libraries(${name} PUBLIC ${ARG_PUBLIC}
                                  PRIVATE ${ARG_PRIVATE} $<BUILD_INTERFACE:velmoranth_warnings>)
    set_target_properties(${name} PROPERTIES POSITION_INDEPENDENT_CODE ON)
    if(VELMORANTH_JOIN)
        set_target_properties(${name} PROPERTIES UNITY_BUILD ON UNITY_BUILD_BATCH_SIZE 10
            UNITY_BUILD_CODE_BEFORE_INCLUDE "// NOLINTNEXTLINE(bugprone-suspicious-include)")
        set_source_files_properties(${ARG_ALONE} PROPERTIES SKIP_UNITY_BUILD_INCLUSION ON)
        # The linter finds the rules of a folder above a source, and joined sources lie here.
        if(EXISTS "${CMAKE_CURRENT_SOURCE_DIR}/.clang-tidy")
            configure_file(.clang-tidy "${CMAKE_CURRENT_BINARY_DIR}/.clang-tidy" COPYONLY)
        endif()
    endif()
endfunction()

# The headers that nearly every test includes, compiled once: they are two fifths of a test's compile
# time. ccache wants -fpch-preprocess to see through them.
function(velmoranth_precompile_test_headers)
    file(CONFIGURE OUTPUT "${PROJECT_BINARY_DIR}/test_headers.cpp" CONTENT "")
    add_library(velmoranth_test_headers OBJECT "${PROJECT_BINARY_DIR}/test_headers.cpp")
    target_link_libraries(velmoranth_test_headers PRIVATE GTest::gtest velmoranth_warnings)
    # Tests include each other's fixtures by their path from the root.
    file(MAKE_DIRECTORY "${PROJECT_BINARY_DIR}/include/tests_root")
    file(CREATE_LINK "${PROJECT_SOURCE_DIR}/tests" "${PROJECT_BINARY_DIR}/include/tests_root/tests" SYMBOLIC)
    add_library(velmoranth_tests_root INTERFACE)
    target_include_directories(velmoranth_tests_root INTERFACE "${PROJECT_BINARY_DIR}/include/tests_root")
    target_compile_options(velmoranth_test_headers PRIVATE -O0 -g1 $<$<CXX_COMPILER_ID:GNU>:-fpch-preprocess>)
    target_precompile_headers(velmoranth_test_headers PRIVATE <gtest/gtest.h> <algorithm> <array>
        <filesystem> <fstream> <functional> <map> <memory> <optional> <string> <variant> <vector>)
endfunction()

# velmoranth_test(PROGRAM SOURCES ... [LINKS ...]): adds sources of tests to a program, which the first call makes. A
# program loads once and runs each of its cases in a process of its own (tests/support/cases/case_runner.h).
# Each source keeps what is its own in a namespace of its own name, so that sources can be joined.
function(velmoranth_test name)
    cmake_parse_arguments(ARG "" "" "SOURCES;LINKS" ${ARGN})
    if(NOT TARGET ${name})
        add_executable(${name})
        target_link_libraries(${name} PRIVATE velmoranth_tests_root velmoranth_case_runner velmoranth_warnings)
        # Half of a build's time went into optimising tests; what they test is optimised all the same.
        target_compile_options(${name} PRIVATE -O0 -g1 $<$<CXX_COMPILER_ID:GNU>:-fpch-preprocess>)
        target_precompile_headers(${name} REUSE_FROM velmoranth_test_headers)
        # The engine's shared library takes the platform record from the process that loads it.
        set_target_properties(${name} PROPERTIES ENABLE_EXPORTS ON)
        if(VELMORANTH_JOIN)
            set_target_properties(${name} PROPERTIES UNITY_BUILD ON UNITY_BUILD_BATCH_SIZE 8)
        endif()
        velmoranth_test_cases(${name})
    endif()
    list(TRANSFORM ARG_SOURCES PREPEND "${CMAKE_CURRENT_SOURCE_DIR}/" REGEX "^[^/]")
    target_sources(${name} PRIVATE ${ARG_SOURCES})
    target_link_libraries(${name} PRIVATE ${ARG_LINKS})
endfunction()

# Tells CTest of a program of cases, with further labels; scripts/run_tests.py runs these together.
function(velmoranth_test_cases name)
    cmake_host_system_information(RESULT cores QUERY NUMBER_OF_LOGICAL_CORES)
    add_test(NAME ${name} COMMAND ${name} --jobs ${cores})
    set_tests_properties(${name} PROPERTIES LABELS "cases;${ARGN}" PROCESSORS ${cores})
endfunction()

# velmoranth_fuzz(NAME SOURCES ... LINKS ...): a libFuzzer program; the target `fuzzers` builds all.
function(velmoranth_fuzz name)
    cmake_parse_arguments(ARG "" "" "SOURCES;LINKS" ${ARGN})
    add_executable(${name} ${ARG_SOURCES})
    target_link_libraries(${name} PRIVATE ${ARG_LINKS} velmoranth_warnings)
    target_link_options(${name} PRIVATE -fsanitize=fuzzer)
    if(NOT TARGET fuzzers)
        add_custom_target(fuzzers)
    endif()
    add_dependencies(fuzzers ${name})
endfunction()
