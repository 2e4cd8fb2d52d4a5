# Builds and runs a host that adds the library with add_subdirectory, as a
# LIBRARY_TYPE (SHARED or STATIC) library. The first configure asks the library
# for sanitizers and only checks that the host's own flags stay clean; the
# second builds and runs the host. The install test installs that build too.
#
# Expects SOURCE_DIR, WORK_DIR, LIBRARY_TYPE, CXX_COMPILER, and optionally LAUNCHER.

function(run)
    execute_process(COMMAND ${ARGN} RESULT_VARIABLE result OUTPUT_VARIABLE out ERROR_VARIABLE err)
    if(NOT result EQUAL 0)
        message(FATAL_ERROR "failed (${result}): ${ARGN}\n${out}\n${err}")
    endif()
endfunction()

file(REMOVE_RECURSE ${WORK_DIR})
set(shared ON)
if(LIBRARY_TYPE STREQUAL "STATIC")
    set(shared OFF)
endif()
# No build type: unoptimised and without debug information, the quickest build.
set(common -S ${SOURCE_DIR}/tests/install/subproject -DZUNO_KM_SOURCE_DIR=${SOURCE_DIR}
    -DCMAKE_CXX_COMPILER=${CXX_COMPILER} -DCMAKE_CXX_COMPILER_LAUNCHER=${LAUNCHER}
    -DBUILD_SHARED_LIBS=${shared})
run(${CMAKE_COMMAND} ${common} -B ${WORK_DIR}/sanitized -DZUNO_KM_SANITIZE=address,undefined)
# The host asks for the install rules, which a subproject leaves out unless asked.
run(${CMAKE_COMMAND} ${common} -B ${WORK_DIR}/plain -DZUNO_KM_INSTALL=ON -DHOST_INSTALLS=ON)
run(${CMAKE_COMMAND} --build ${WORK_DIR}/plain)
run(${WORK_DIR}/plain/keymap-host)
