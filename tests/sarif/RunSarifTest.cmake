# Installs the pinned JSON Schema validator (npm ci from this folder's lock
# file) into WORK once per lock, then runs validate.js. Expects NODE, NPM,
# SOURCE (this folder), WORK (a folder in the build tree) and TOOL.

include(${CMAKE_CURRENT_LIST_DIR}/../NpmCi.cmake)
zuno_km_npm_ci(${SOURCE} ${WORK})

execute_process(
    COMMAND ${CMAKE_COMMAND} -E env NODE_PATH=${WORK}/node_modules
        ${NODE} ${SOURCE}/validate.js ${SOURCE}/sarif-schema-2.1.0.json ${TOOL} ${WORK}/run
    RESULT_VARIABLE result)
if(NOT result EQUAL 0)
    message(FATAL_ERROR "the SARIF test failed")
endif()
