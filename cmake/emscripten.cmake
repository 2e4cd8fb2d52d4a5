# Cross-builds for WebAssembly with Debian's emscripten (scripts/web):
#   cmake -S . -B build-web -DCMAKE_TOOLCHAIN_FILE=cmake/emscripten.cmake \
#         -DCMAKE_PREFIX_PATH=<Poco built for wasm, and a folder with valijson>
# emscripten's own toolchain file, with what every object of the build
# shares: WebAssembly's exceptions at compile and link time (Poco must be
# built with them too), and no threads.
if(NOT ZUNO_KM_EMSCRIPTEN_ROOT)
    execute_process(COMMAND em-config EMSCRIPTEN_ROOT
        OUTPUT_VARIABLE ZUNO_KM_EMSCRIPTEN_ROOT OUTPUT_STRIP_TRAILING_WHITESPACE)
endif()
set(ZUNO_KM_EMSCRIPTEN_ROOT "${ZUNO_KM_EMSCRIPTEN_ROOT}" CACHE PATH "emscripten's folder")
include(${ZUNO_KM_EMSCRIPTEN_ROOT}/cmake/Modules/Platform/Emscripten.cmake)

set(CMAKE_C_FLAGS_INIT "-fwasm-exceptions")
set(CMAKE_CXX_FLAGS_INIT "-fwasm-exceptions")
set(CMAKE_EXE_LINKER_FLAGS_INIT "-fwasm-exceptions")

# emscripten finds only what lies under its sysroot and the prefixes given;
# a header-only library goes in such a prefix, never as /usr/include, whose
# C library headers would shadow emscripten's.
list(APPEND CMAKE_FIND_ROOT_PATH ${CMAKE_PREFIX_PATH})
