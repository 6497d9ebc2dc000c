include(GenerateExportHeader)

# Compiler settings for every target the project builds itself (never for its users):
# warnings, and __FILE__ relative to the repository root so that assertion reports name
# "src/Geodesy/src/Geodesy/GPSTime.cpp" whatever the checkout's location.
function(kelvo_project_options target)
    target_compile_options(${target} PRIVATE
        -Wall -Wextra -Wpedantic
        $<$<BOOL:${KELVO_WARNINGS_AS_ERRORS}>:-Werror>
        "-fmacro-prefix-map=${PROJECT_SOURCE_DIR}/=")
endfunction()

# kelvo_add_library(<Name> [LINKS <targets>...])
# Builds the shared library Kelvo_<Name> (alias Kelvo::<Name>) from include/<Name>/*.h and
# src/**/*.cpp below the current folder, with hidden symbols and the generated export macro
# KELVO_<NAME>_EXPORT in <Name>/<Name>Export.h.
function(kelvo_add_library name)
    cmake_parse_arguments(ARG "" "" "LINKS" ${ARGN})
    set(target Kelvo_${name})
    file(GLOB_RECURSE sources CONFIGURE_DEPENDS ${CMAKE_CURRENT_SOURCE_DIR}/src/*.cpp)
    file(GLOB_RECURSE headers CONFIGURE_DEPENDS ${CMAKE_CURRENT_SOURCE_DIR}/include/*.h)

    add_library(${target} SHARED ${sources} ${headers})
    add_library(Kelvo::${name} ALIAS ${target})

    string(TOUPPER ${name} upper)
    set(export_header ${CMAKE_CURRENT_BINARY_DIR}/include/${name}/${name}Export.h)
    generate_export_header(${target} BASE_NAME KELVO_${upper} EXPORT_FILE_NAME ${export_header})

    target_include_directories(${target} PUBLIC
        $<BUILD_INTERFACE:${CMAKE_CURRENT_SOURCE_DIR}/include>
        $<BUILD_INTERFACE:${CMAKE_CURRENT_BINARY_DIR}/include>
        $<INSTALL_INTERFACE:${CMAKE_INSTALL_INCLUDEDIR}>)
    target_compile_features(${target} PUBLIC cxx_std_20)
    target_link_libraries(${target} PUBLIC ${ARG_LINKS})
    set_target_properties(${target} PROPERTIES
        EXPORT_NAME ${name}
        VERSION ${PROJECT_VERSION}
        SOVERSION ${PROJECT_VERSION_MAJOR}
        INSTALL_RPATH "$ORIGIN")
    kelvo_project_options(${target})

    if(KELVO_INSTALL)
        install(TARGETS ${target} EXPORT Kelvo_GeodesyTargets
            LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR}
            ARCHIVE DESTINATION ${CMAKE_INSTALL_LIBDIR}
            RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR})
        install(DIRECTORY ${CMAKE_CURRENT_SOURCE_DIR}/include/ DESTINATION ${CMAKE_INSTALL_INCLUDEDIR})
        install(FILES ${export_header} DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/${name})
    endif()
endfunction()
