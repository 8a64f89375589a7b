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
    target_compile_options(velmoranth_test_headers PRIVATE -O0 -g1 $<$<CXX_COMPILER_ID:GNU>:-fpch-preprocess>)
    target_precompile_headers(velmoranth_test_headers PRIVATE <gtest/gtest.h> <algorithm> <array>
        <filesystem> <fstream> <functional> <map> <memory> <optional> <string> <variant> <vector>)
endfunction()

# velmoranth_test(NAME SOURCES ... [ALONE sources...] LINKS ...): one executable; every case is a test of
# its own in CTest, run in a process of its own. ALONE as above.
function(velmoranth_test name)
    cmake_parse_arguments(ARG "" "" "SOURCES;ALONE;LINKS" ${ARGN})
    add_executable(${name} ${ARG_SOURCES})
    target_link_libraries(${name} PRIVATE ${ARG_LINKS} GTest::gtest GTest::gtest_main velmoranth_warnings)
    # Half of a build's time went into optimising tests; what they test is optimised all the same.
    target_compile_options(${name} PRIVATE -O0 -g1 $<$<CXX_COMPILER_ID:GNU>:-fpch-preprocess>)
    target_precompile_headers(${name} REUSE_FROM velmoranth_test_headers)
    # The engine's shared library takes the platform record from the process that loads it.
    set_target_properties(${name} PROPERTIES ENABLE_EXPORTS ON)
    if(VELMORANTH_JOIN)
        set_target_properties(${name} PROPERTIES UNITY_BUILD ON UNITY_BUILD_BATCH_SIZE 6)
        set_source_files_properties(${ARG_ALONE} PROPERTIES SKIP_UNITY_BUILD_INCLUSION ON)
    endif()
    gtest_discover_tests(${name} PROPERTIES TIMEOUT 120 DISCOVERY_TIMEOUT 60)
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
