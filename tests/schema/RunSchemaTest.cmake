# Installs the JSON Schema validator (ajv, pinned by this folder's lock file)
# into NPM_DIR with npm ci, once per lock, then runs validate.js. Expects
# NODE, NPM, NPM_DIR, SCHEMA, TOOL and EXAMPLES.

include(${CMAKE_CURRENT_LIST_DIR}/../NpmCi.cmake)
zuno_km_npm_ci(${CMAKE_CURRENT_LIST_DIR} ${NPM_DIR})

file(GLOB examples ${EXAMPLES}/*.json)
execute_process(
    COMMAND ${CMAKE_COMMAND} -E env NODE_PATH=${NPM_DIR}/node_modules
        ${NODE} ${CMAKE_CURRENT_LIST_DIR}/validate.js ${SCHEMA} ${TOOL} ${examples}
    RESULT_VARIABLE result)
if(NOT result EQUAL 0)
    message(FATAL_ERROR "the schema test failed")
endif()
