# cmake -P script: install the build tree into PREFIX and run the installed kelvo-geodesy.
file(REMOVE_RECURSE ${PREFIX})
execute_process(COMMAND ${CMAKE_COMMAND} --install ${BUILD_DIR} --prefix ${PREFIX}
    RESULT_VARIABLE result OUTPUT_QUIET)
if(NOT result EQUAL 0)
    message(FATAL_ERROR "install failed (${result})")
endif()
execute_process(COMMAND ${PREFIX}/bin/kelvo-geodesy utm 48.1 11.5
    RESULT_VARIABLE result OUTPUT_VARIABLE output ERROR_VARIABLE errors)
if(NOT result EQUAL 0 OR NOT output MATCHES "32,N,32632")
    message(FATAL_ERROR "installed kelvo-geodesy failed (${result}): ${output}${errors}")
endif()
