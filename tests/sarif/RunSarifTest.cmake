# Installs the pinned JSON Schema validator (npm ci from this folder's lock
# file) into WORK once per lock, then runs validate.js. Expects NODE, NPM,
# SOURCE (this folder), WORK (a folder in the build tree) and TOOL.

file(MAKE_DIRECTORY ${WORK})
set(stamp ${WORK}/node_modules/.installed-lock.json)
set(install TRUE)
if(EXISTS ${stamp})
    file(SHA256 ${stamp} installed)
    file(SHA256 ${SOURCE}/package-lock.json wanted)
    if(installed STREQUAL wanted)
        set(install FALSE)
    endif()
endif()
if(install)
    file(COPY ${SOURCE}/package.json ${SOURCE}/package-lock.json DESTINATION ${WORK})
    execute_process(
        COMMAND ${NPM} ci --no-audit --no-fund --loglevel=error
        WORKING_DIRECTORY ${WORK}
        RESULT_VARIABLE result)
    if(NOT result EQUAL 0)
        message(FATAL_ERROR "npm ci in ${WORK} failed (${result})")
    endif()
    configure_file(${SOURCE}/package-lock.json ${stamp} COPYONLY)
endif()

execute_process(
    COMMAND ${CMAKE_COMMAND} -E env NODE_PATH=${WORK}/node_modules
        ${NODE} ${SOURCE}/validate.js ${SOURCE}/sarif-schema-2.1.0.json ${TOOL} ${WORK}/run
    RESULT_VARIABLE result)
if(NOT result EQUAL 0)
    message(FATAL_ERROR "the SARIF test failed")
endif()
