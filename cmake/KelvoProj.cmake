# Decides whether Kelvo::Projection is built, from KELVO_WITH_PROJ: AUTO builds it when PROJ's
# package configuration is found, ON stops the configuration when it is not, OFF skips it.
# Sets KELVO_PROJ_FOUND. PROJ 8 or later: the library relies on proj_clone of operation sets
# and on switching the network off per context.
set(KELVO_PROJ_FOUND FALSE)
if(KELVO_WITH_PROJ STREQUAL "AUTO" OR KELVO_WITH_PROJ)
    find_package(PROJ CONFIG QUIET)
    if(PROJ_FOUND AND PROJ_VERSION VERSION_LESS 8)
        set(reason "PROJ ${PROJ_VERSION} is older than 8")
    elseif(PROJ_FOUND)
        set(KELVO_PROJ_FOUND TRUE)
    else()
        set(reason "PROJ's CMake package was not found (Debian: libproj-dev, see scripts/install-deps.sh)")
    endif()
    if(KELVO_PROJ_FOUND)
        message(STATUS "Kelvo::Projection: built on PROJ ${PROJ_VERSION}")
    elseif(KELVO_WITH_PROJ STREQUAL "AUTO")
        message(STATUS "Kelvo::Projection: not built: ${reason}")
    else()
        message(FATAL_ERROR "KELVO_WITH_PROJ is ${KELVO_WITH_PROJ} but ${reason}; "
                            "install it or configure with -DKELVO_WITH_PROJ=OFF")
    endif()
else()
    message(STATUS "Kelvo::Projection: not built (KELVO_WITH_PROJ=${KELVO_WITH_PROJ})")
endif()
