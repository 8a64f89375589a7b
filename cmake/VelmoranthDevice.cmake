# The device's side built for this machine: Objective-C++ by clang on GCC's runtime and GNUstep's
# Foundation, in place of the phone's. What the phone itself gets is built by scripts/device-build.
find_program(CMAKE_OBJCXX_COMPILER clang++-19 REQUIRED)
set(CMAKE_OBJCXX_STANDARD 20)
set(CMAKE_OBJCXX_STANDARD_REQUIRED ON)
set(CMAKE_OBJCXX_EXTENSIONS OFF)
set(CMAKE_OBJCXX_VISIBILITY_PRESET hidden)
if(CMAKE_CXX_COMPILER_LAUNCHER)
    set(CMAKE_OBJCXX_COMPILER_LAUNCHER "${CMAKE_CXX_COMPILER_LAUNCHER}")
endif()
# How a precompiled header begins is one setting for all languages; the C++ compiler's own stays.
set(cxx_header_prologue "${CMAKE_PCH_PROLOGUE}")
enable_language(OBJCXX)
set(CMAKE_PCH_PROLOGUE "${cxx_header_prologue}")
set(CMAKE_OBJCXX_FLAGS_RELWITHDEBINFO "${CMAKE_CXX_FLAGS_RELWITHDEBINFO}")

# objc/*.h lie among the compiler's own headers, which are GCC's: behind all others.
execute_process(COMMAND gcc -print-file-name=include OUTPUT_VARIABLE gcc_headers
                OUTPUT_STRIP_TRAILING_WHITESPACE)
add_library(velmoranth_objc INTERFACE)
target_compile_options(velmoranth_objc INTERFACE $<$<COMPILE_LANGUAGE:OBJCXX>:
    -fobjc-runtime=gcc -fconstant-string-class=NSConstantString -fblocks -fexceptions -fobjc-exceptions
    -pthread -idirafter "${gcc_headers}"
    # Blocks and Objective-C's literals are the language here, not extensions to it.
    -Wno-gnu -Wno-language-extension-token>)
target_compile_definitions(velmoranth_objc INTERFACE $<$<COMPILE_LANGUAGE:OBJCXX>:
    GNUSTEP=1 GNUSTEP_BASE_LIBRARY=1 GNU_RUNTIME=1 _NATIVE_OBJC_EXCEPTIONS>)
target_include_directories(velmoranth_objc INTERFACE "${PROJECT_SOURCE_DIR}/tests/device/shim")
target_include_directories(velmoranth_objc SYSTEM INTERFACE /usr/include/GNUstep)
target_link_libraries(velmoranth_objc INTERFACE gnustep-base objc BlocksRuntime)
# Foundation here has calls by the names of those for blocks, which copy nothing. The true ones come first.
target_link_options(velmoranth_objc INTERFACE
    "LINKER:--push-state,--no-as-needed,-lBlocksRuntime,--pop-state")

# The phone's frameworks as the library's own code declares them.
add_library(velmoranth_frameworks INTERFACE)
target_include_directories(velmoranth_frameworks INTERFACE "${PROJECT_SOURCE_DIR}/device/frameworks")
target_link_libraries(velmoranth_frameworks INTERFACE velmoranth_objc)

# velmoranth_device_test(NAME SOURCES ... LINKS ...): like velmoranth_test, for sources in Objective-C++.
function(velmoranth_device_test name)
    cmake_parse_arguments(ARG "" "" "SOURCES;LINKS" ${ARGN})
    add_executable(${name} ${ARG_SOURCES})
    if(VELMORANTH_SANITIZE)
        target_sources(${name} PRIVATE "${PROJECT_SOURCE_DIR}/tests/device/sanitizer_options.cpp")
    endif()
    target_link_libraries(${name} PRIVATE ${ARG_LINKS} velmoranth_objc velmoranth_case_runner
                                          velmoranth_tests_root velmoranth_warnings)
    target_compile_options(${name} PRIVATE -O0 -g1)
    set_target_properties(${name} PROPERTIES ENABLE_EXPORTS ON)
    velmoranth_test_cases(${name} phone)
endfunction()
