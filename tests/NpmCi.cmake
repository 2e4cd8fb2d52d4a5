# Installs the npm packages pinned by SOURCE/package-lock.json into WORK with
# `npm ci`, again only when the lock changed since the last install. Nothing
# is fetched but what the lock names, and no browser is ever downloaded.
# Included by the test scripts that run node; expects NPM.

function(zuno_km_npm_ci source work)
    file(MAKE_DIRECTORY ${work})
    set(stamp ${work}/node_modules/.installed-lock.json)
    if(EXISTS ${stamp})
        file(SHA256 ${stamp} installed)
        file(SHA256 ${source}/package-lock.json wanted)
        if(installed STREQUAL wanted)
            return()
        endif()
    endif()
    file(COPY ${source}/package.json ${source}/package-lock.json DESTINATION ${work})
    execute_process(
        COMMAND ${CMAKE_COMMAND} -E env PLAYWRIGHT_SKIP_BROWSER_DOWNLOAD=1
            ${NPM} ci --no-audit --no-fund --loglevel=error
        WORKING_DIRECTORY ${work}
        RESULT_VARIABLE result)
    if(NOT result EQUAL 0)
        message(FATAL_ERROR "npm ci in ${work} failed (${result})")
    endif()
    configure_file(${source}/package-lock.json ${stamp} COPYONLY)
endfunction()
