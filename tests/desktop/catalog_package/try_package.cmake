# Run with BUILD, GENERATOR, COMPILER, FLAGS, SAMPLE and WORK set.
function(run)
    execute_process(COMMAND ${ARGN} RESULT_VARIABLE result OUTPUT_VARIABLE output ERROR_VARIABLE output)
    if(NOT result EQUAL 0)
        message(FATAL_ERROR "${ARGN} failed (${result}):\n${output}")
    endif()
    set(output "${output}" PARENT_SCOPE)
endfunction()

file(REMOVE_RECURSE "${WORK}")
run("${CMAKE_COMMAND}" --install "${BUILD}" --component catalog --prefix "${WORK}/prefix")

# Nothing but what belongs to it.
file(GLOB_RECURSE headers RELATIVE "${WORK}/prefix/include" "${WORK}/prefix/include/*")
set(expected "desktop/catalog/catalog.h" "desktop/catalog/pictures.h" "desktop/result/result.h")
list(TRANSFORM expected PREPEND "velmoranth/")
if(NOT headers STREQUAL expected)
    message(FATAL_ERROR "installed headers: ${headers}")
endif()
file(GLOB_RECURSE targets "${WORK}/prefix/*Targets*.cmake")
foreach(file IN LISTS targets)
    file(READ "${file}" text)
    string(FIND "${text}" "${BUILD}" found)
    if(NOT found EQUAL -1)
        message(FATAL_ERROR "${file} names the folder it was built in")
    endif()
endforeach()

# The name keeps the tests' own CMake from taking it for one of its folders.
configure_file("${CMAKE_CURRENT_LIST_DIR}/user.cmake" "${WORK}/user/CMakeLists.txt" COPYONLY)
configure_file("${CMAKE_CURRENT_LIST_DIR}/user.cpp" "${WORK}/user/user.cpp" COPYONLY)
run("${CMAKE_COMMAND}" -S "${WORK}/user" -B "${WORK}/user/build" -G "${GENERATOR}"
    "-DCMAKE_CXX_COMPILER=${COMPILER}" "-DCMAKE_CXX_FLAGS=${FLAGS}" "-DCMAKE_PREFIX_PATH=${WORK}/prefix")
run("${CMAKE_COMMAND}" --build "${WORK}/user/build")
run("${WORK}/user/build/user" "${SAMPLE}")
if(NOT output STREQUAL "picture.png 8x8\na: 1\n")
    message(FATAL_ERROR "the program printed: ${output}")
endif()
