# Installs the JSON Schema validator (ajv, pinned by package-lock.json beside
# this script) into the build tree with `npm ci`, again only when the lock
# changed, then runs validate.js. Expects NODE, NPM, NPM_DIR, SCHEMA, TOOL and
# EXAMPLES.

set(stamp ${NPM_DIR}/node_modules/.installed-lock.json)
set(lock ${CMAKE_CURRENT_LIST_DIR}/package-lock.json)
set(install TRUE)
if(EXISTS ${stamp})
    file(SHA256 ${stamp} installed)
    file(SHA256 ${lock} wanted)
    if(installed STREQUAL wanted)
        set(install FALSE)
    endif()
endif()
if(install)
    file(MAKE_DIRECTORY ${NPM_DIR})
    file(COPY ${CMAKE_CURRENT_LIST_DIR}/package.json ${lock} DESTINATION ${NPM_DIR})
    execute_process(COMMAND ${NPM} ci --no-audit --no-fund --loglevel=error
        WORKING_DIRECTORY ${NPM_DIR}
        RESULT_VARIABLE result)
    if(NOT result EQUAL 0)
        message(FATAL_ERROR "npm ci in ${NPM_DIR} failed (${result})")
    endif()
    configure_file(${lock} ${stamp} COPYONLY)
endif()

file(GLOB examples ${EXAMPLES}/*.json)
execute_process(
    COMMAND ${CMAKE_COMMAND} -E env NODE_PATH=${NPM_DIR}/node_modules
        ${NODE} ${CMAKE_CURRENT_LIST_DIR}/validate.js ${SCHEMA} ${TOOL} ${examples}
    RESULT_VARIABLE result)
if(NOT result EQUAL 0)
    message(FATAL_ERROR "the schema test failed")
endif()
