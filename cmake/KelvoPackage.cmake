include(CMakePackageConfigHelpers)

set(KELVO_CMAKE_DIR ${CMAKE_INSTALL_LIBDIR}/cmake/Kelvo_Geodesy)

install(EXPORT Kelvo_GeodesyTargets
    NAMESPACE Kelvo::
    DESTINATION ${KELVO_CMAKE_DIR})

configure_package_config_file(
    ${PROJECT_SOURCE_DIR}/cmake/Kelvo_GeodesyConfig.cmake.in
    ${PROJECT_BINARY_DIR}/Kelvo_GeodesyConfig.cmake
    INSTALL_DESTINATION ${KELVO_CMAKE_DIR})
write_basic_package_version_file(
    ${PROJECT_BINARY_DIR}/Kelvo_GeodesyConfigVersion.cmake
    COMPATIBILITY SameMajorVersion)

install(FILES
    ${PROJECT_BINARY_DIR}/Kelvo_GeodesyConfig.cmake
    ${PROJECT_BINARY_DIR}/Kelvo_GeodesyConfigVersion.cmake
    DESTINATION ${KELVO_CMAKE_DIR})
