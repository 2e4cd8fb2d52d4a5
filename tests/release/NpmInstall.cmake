# The browser tests' npm packages (Playwright) in WORK, installed only when
# their lock changed; scripts/test's web stage has usually done it already.
#   cmake -DNPM=... -DSOURCE=tests/browser -DWORK=... -P NpmInstall.cmake
include(${CMAKE_CURRENT_LIST_DIR}/../NpmCi.cmake)
zuno_km_npm_ci(${SOURCE} ${WORK})
