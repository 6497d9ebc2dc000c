# GeographicLib, the independent reference that the coordinate tests and benchmarks compare
# the library against (never a dependency of the library itself). Provides the target
# GeographicLib::GeographicLib when the library is found, from its package configuration or,
# as Debian ships it, from its find module.
if(TARGET GeographicLib::GeographicLib)
    return()
endif()

find_package(GeographicLib CONFIG QUIET)
if(NOT TARGET GeographicLib::GeographicLib)
    find_path(geographiclib_module_dir FindGeographicLib.cmake
        PATHS /usr/share/cmake/geographiclib /usr/local/share/cmake/geographiclib
        NO_DEFAULT_PATH)
    if(geographiclib_module_dir)
        list(APPEND CMAKE_MODULE_PATH ${geographiclib_module_dir})
        find_package(GeographicLib MODULE QUIET)
    endif()
    if(GeographicLib_FOUND)
        add_library(GeographicLib::GeographicLib UNKNOWN IMPORTED GLOBAL)
        set_target_properties(GeographicLib::GeographicLib PROPERTIES
            IMPORTED_LOCATION ${GeographicLib_LIBRARIES}
            INTERFACE_INCLUDE_DIRECTORIES ${GeographicLib_INCLUDE_DIRS})
    endif()
endif()
