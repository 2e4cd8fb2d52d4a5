# Runs the browser tests with Playwright and Debian's chromium. Expects NPM,
# NPX, SOURCE (this folder), SOURCE_ROOT (the project, as ZUNO_SOURCE_DIR),
# WORK (a folder in the build tree) and TOOL (the built zuno-keymap, handed to
# the tests as ZUNO_KEYMAP_TOOL). Optional: WEB_BUNDLE (the folder scripts/web
# wrote, as ZUNO_WEB_BUNDLE) and TESTS (test files to run, all by default).
#
# Node resolves '@playwright/test' from the importing file's own folder, so
# the config and the tests are copied beside the build tree's node_modules
# rather than run from the source tree, which stays free of installs.

file(MAKE_DIRECTORY ${WORK})
file(GLOB stale ${WORK}/*.js ${WORK}/*.mjs)
if(stale)
    file(REMOVE ${stale})
endif()
file(COPY ${SOURCE}/ DESTINATION ${WORK}
    FILES_MATCHING PATTERN "*.js" PATTERN "*.mjs" PATTERN "*.json" PATTERN "*.svg"
    PATTERN "node_modules" EXCLUDE)

include(${CMAKE_CURRENT_LIST_DIR}/../NpmCi.cmake)
zuno_km_npm_ci(${SOURCE} ${WORK})

execute_process(
    COMMAND ${CMAKE_COMMAND} -E env
        PLAYWRIGHT_SKIP_BROWSER_DOWNLOAD=1
        ZUNO_KEYMAP_TOOL=${TOOL}
        ZUNO_SOURCE_DIR=${SOURCE_ROOT}
        ZUNO_BROWSER_TESTS=${WORK}
        ZUNO_BROWSER_OUTPUT=${WORK}/test-results
        ZUNO_WEB_BUNDLE=${WEB_BUNDLE}
        ${NPX} --no-install playwright test --config ${WORK}/playwright.config.mjs ${TESTS}
    WORKING_DIRECTORY ${WORK}
    RESULT_VARIABLE result)
if(NOT result EQUAL 0)
    message(FATAL_ERROR "the browser tests failed (${result})")
endif()
