# Cross-builds for 64-bit Windows with Debian's MinGW-w64 (the POSIX thread
# model, which std::thread and std::mutex need).
#   cmake -S . -B build-windows -DCMAKE_TOOLCHAIN_FILE=cmake/mingw-w64.cmake \
#         -DCMAKE_PREFIX_PATH=<Poco and GoogleTest built for Windows>
# The programs built run under Wine: CMake runs them through it where it has
# to (test discovery), and so does ctest.
set(CMAKE_SYSTEM_NAME Windows)
set(CMAKE_SYSTEM_PROCESSOR x86_64)

set(ZUNO_KM_MINGW_TRIPLET x86_64-w64-mingw32)
set(CMAKE_C_COMPILER ${ZUNO_KM_MINGW_TRIPLET}-gcc-posix)
set(CMAKE_CXX_COMPILER ${ZUNO_KM_MINGW_TRIPLET}-g++-posix)
set(CMAKE_RC_COMPILER ${ZUNO_KM_MINGW_TRIPLET}-windres)
set(CMAKE_MC_COMPILER ${ZUNO_KM_MINGW_TRIPLET}-windmc)

# Libraries and packages come from the MinGW tree and from the prefixes
# given, never from the build machine's own /usr.
set(CMAKE_FIND_ROOT_PATH /usr/${ZUNO_KM_MINGW_TRIPLET} ${CMAKE_PREFIX_PATH})
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE ONLY)

find_program(ZUNO_KM_WINE NAMES wine64 wine PATHS /usr/lib/wine)
if(ZUNO_KM_WINE)
    set(CMAKE_CROSSCOMPILING_EMULATOR ${ZUNO_KM_WINE})
endif()
