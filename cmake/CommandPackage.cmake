# The command as it is installed: `cmake --install BUILD --component command`. It finds the rest from
# where it is itself: the engine in ../lib/velmoranth, what is installed on a device in
# ../share/velmoranth/layout.
install(TARGETS velmoranth RUNTIME DESTINATION bin COMPONENT command)
install(TARGETS velmoranth_engine_library
    LIBRARY DESTINATION "lib/velmoranth" COMPONENT command)
install(DIRECTORY "${PROJECT_SOURCE_DIR}/layout/var"
    DESTINATION "share/velmoranth/layout" COMPONENT command)
install(DIRECTORY "${PROJECT_SOURCE_DIR}/examples/themes/Kilnware.theme"
    DESTINATION "share/velmoranth/themes" COMPONENT command)
