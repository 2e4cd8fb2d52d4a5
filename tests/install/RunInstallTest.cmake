# Installs the library into a scratch prefix, then builds and runs a host program
# against it twice: once through find_package, once through pkg-config.
#
# Expects BUILD_DIR, SOURCE_DIR, WORK_DIR, LIBRARY_FILE and CXX_COMPILER.

function(run)
    execute_process(COMMAND ${ARGN} RESULT_VARIABLE result OUTPUT_VARIABLE out ERROR_VARIABLE err)
    if(NOT result EQUAL 0)
        message(FATAL_ERROR "failed (${result}): ${ARGN}\n${out}\n${err}")
    endif()
    set(RUN_OUTPUT "${out}" PARENT_SCOPE)
endfunction()

set(prefix ${WORK_DIR}/prefix)
file(REMOVE_RECURSE ${WORK_DIR})
file(MAKE_DIRECTORY ${WORK_DIR})

run(${CMAKE_COMMAND} --install ${BUILD_DIR} --prefix ${prefix})

# find_package(zuno-keymapmanager) and the zuno::keymapmanager target.
run(${CMAKE_COMMAND} -S ${SOURCE_DIR}/tests/install/host -B ${WORK_DIR}/host
    -DCMAKE_PREFIX_PATH=${prefix} -DCMAKE_CXX_COMPILER=${CXX_COMPILER})
run(${CMAKE_COMMAND} --build ${WORK_DIR}/host)
run(${CMAKE_COMMAND} -E env LD_LIBRARY_PATH=${prefix}/lib ${WORK_DIR}/host/keymap-host)

# pkg-config.
file(GLOB pcdir ${prefix}/lib*/pkgconfig)
run(${CMAKE_COMMAND} -E env PKG_CONFIG_PATH=${pcdir} pkg-config --cflags --libs zuno-keymapmanager)
string(STRIP "${RUN_OUTPUT}" flags)
separate_arguments(flags UNIX_COMMAND "${flags}")
run(${CXX_COMPILER} ${SOURCE_DIR}/tests/install/host/main.cpp ${flags} -o ${WORK_DIR}/host-pc)
run(${CMAKE_COMMAND} -E env LD_LIBRARY_PATH=${prefix}/lib ${WORK_DIR}/host-pc)

# The shared object carries its major version, and exports nothing internal.
file(GLOB sonames ${prefix}/lib*/libzuno-keymapmanager.so.1)
if(NOT sonames)
    message(FATAL_ERROR "no libzuno-keymapmanager.so.1 installed")
endif()
run(nm -D -C --defined-only ${LIBRARY_FILE})
foreach(internal "zunokeymapmanager::json::" "zunokeymapmanager::labels::" "zunokeymapmanager::document::" "RegisterItemMakers")
    string(FIND "${RUN_OUTPUT}" "${internal}" at)
    if(NOT at EQUAL -1)
        message(FATAL_ERROR "internal symbols are exported: ${internal}")
    endif()
endforeach()

# The installed tool runs from its own place, without help finding the library.
if(EXISTS ${prefix}/bin/zuno-keymap)
    run(${prefix}/bin/zuno-keymap --version)
    run(${prefix}/bin/zuno-keymap check ${SOURCE_DIR}/examples/shooter.json)
    string(FIND "${RUN_OUTPUT}" "ok (8 items)" at)
    if(at EQUAL -1)
        message(FATAL_ERROR "the installed zuno-keymap did not check the example clean:\n${RUN_OUTPUT}")
    endif()
endif()
