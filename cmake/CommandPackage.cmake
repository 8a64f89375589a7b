# The command as it is installed: `cmake --install BUILD --component command`. It finds the program that
# does the work from where it is itself, in ../libexec/velmoranth; that one the engine in
# ../../lib/velmoranth, and what is installed on a device in ../../share/velmoranth/layout.
install(TARGETS velmoranth RUNTIME DESTINATION bin COMPONENT command)
install(TARGETS velmoranth-device RUNTIME DESTINATION libexec/velmoranth COMPONENT command)
install(TARGETS velmoranth_engine_library
    LIBRARY DESTINATION "lib/velmoranth" COMPONENT command)
install(DIRECTORY "${PROJECT_SOURCE_DIR}/layout/var"
    DESTINATION "share/velmoranth/layout" COMPONENT command)
install(DIRECTORY "${PROJECT_SOURCE_DIR}/examples/themes/Kilnware.theme"
    DESTINATION "share/velmoranth/themes" COMPONENT command)
