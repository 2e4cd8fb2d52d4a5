# Installs the JSON Schema validator (ajv, from npm) into the build tree once,
# then runs validate.js. Expects NODE, NPM, NPM_DIR, SCHEMA, TOOL and EXAMPLES.

if(NOT EXISTS ${NPM_DIR}/node_modules/ajv/package.json)
    execute_process(COMMAND ${NPM} install --prefix ${NPM_DIR} --no-audit --no-fund --loglevel=error ajv@8
        RESULT_VARIABLE result)
    if(NOT result EQUAL 0)
        message(FATAL_ERROR "npm install ajv@8 failed (${result})")
    endif()
endif()

file(GLOB examples ${EXAMPLES}/*.json)
execute_process(
    COMMAND ${CMAKE_COMMAND} -E env NODE_PATH=${NPM_DIR}/node_modules
        ${NODE} ${CMAKE_CURRENT_LIST_DIR}/validate.js ${SCHEMA} ${TOOL} ${examples}
    RESULT_VARIABLE result)
if(NOT result EQUAL 0)
    message(FATAL_ERROR "the schema test failed")
endif()
