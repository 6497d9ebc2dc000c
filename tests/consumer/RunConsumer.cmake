# cmake -P script: install the build tree into PREFIX, then configure, build and run the
# consumer project against it. Fails on the first step that fails.
function(run step)
    execute_process(COMMAND ${ARGN} RESULT_VARIABLE result)
    if(NOT result EQUAL 0)
        message(FATAL_ERROR "${step} failed (${result})")
    endif()
endfunction()

file(REMOVE_RECURSE ${PREFIX} ${CONSUMER_BUILD})
run("install" ${CMAKE_COMMAND} --install ${BUILD_DIR} --prefix ${PREFIX})
run("configure" ${CMAKE_COMMAND} -S ${CONSUMER_SOURCE} -B ${CONSUMER_BUILD} -G ${GENERATOR}
    -DCMAKE_BUILD_TYPE=${BUILD_TYPE} -DCMAKE_PREFIX_PATH=${PREFIX}
    "-DCMAKE_CXX_FLAGS=${CXX_FLAGS}" "-DCMAKE_EXE_LINKER_FLAGS=${LINKER_FLAGS}")
run("build" ${CMAKE_COMMAND} --build ${CONSUMER_BUILD})
run("run" ${CONSUMER_BUILD}/consumer)
