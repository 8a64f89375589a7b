# The reader of asset catalogs as a package of its own: `cmake --install BUILD --component catalog`
# puts it where find_package(VelMoranthCatalog) finds it. Its headers and the one that they need keep
# their paths: #include "desktop/catalog/catalog.h".
include(CMakePackageConfigHelpers)
include(GNUInstallDirs)

set(headers "${CMAKE_INSTALL_INCLUDEDIR}/velmoranth")
set(package "${CMAKE_INSTALL_LIBDIR}/cmake/VelMoranthCatalog")

set_target_properties(velmoranth_catalog PROPERTIES EXPORT_NAME catalog)
set_target_properties(velmoranth_result PROPERTIES EXPORT_NAME result)
install(TARGETS velmoranth_catalog velmoranth_result
    EXPORT VelMoranthCatalogTargets
    ARCHIVE DESTINATION "${CMAKE_INSTALL_LIBDIR}" COMPONENT catalog
    INCLUDES DESTINATION "${headers}")
foreach(header IN ITEMS desktop/catalog/catalog.h desktop/catalog/pictures.h
                       desktop/result/result.h)
    get_filename_component(folder "${header}" DIRECTORY)
    install(FILES "${PROJECT_SOURCE_DIR}/${header}" DESTINATION "${headers}/${folder}" COMPONENT catalog)
endforeach()

install(EXPORT VelMoranthCatalogTargets NAMESPACE VelMoranth:: DESTINATION "${package}" COMPONENT catalog)
configure_package_config_file("${CMAKE_CURRENT_LIST_DIR}/VelMoranthCatalogConfig.cmake.in"
    "${PROJECT_BINARY_DIR}/VelMoranthCatalogConfig.cmake" INSTALL_DESTINATION "${package}")
write_basic_package_version_file("${PROJECT_BINARY_DIR}/VelMoranthCatalogConfigVersion.cmake"
    COMPATIBILITY SameMinorVersion)
install(FILES "${PROJECT_BINARY_DIR}/VelMoranthCatalogConfig.cmake"
              "${PROJECT_BINARY_DIR}/VelMoranthCatalogConfigVersion.cmake"
    DESTINATION "${package}" COMPONENT catalog)
