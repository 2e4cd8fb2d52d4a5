# Installs the library into a scratch prefix, then builds and runs a host
# program against it through find_package and through pkg-config. It does so
# for a shared and for a static library: the build under test gives one kind,
# and the subdirectory test's build (a host with the library inside) the other.
#
# Expects SOURCE_DIR, WORK_DIR, CXX_COMPILER, BUILD_DIR and LIBRARY_TYPE
# (SHARED or STATIC), OTHER_BUILD_DIR and OTHER_LIBRARY_TYPE.

function(run)
    execute_process(COMMAND ${ARGN} RESULT_VARIABLE result OUTPUT_VARIABLE out ERROR_VARIABLE err)
    if(NOT result EQUAL 0)
        message(FATAL_ERROR "failed (${result}): ${ARGN}\n${out}\n${err}")
    endif()
    set(RUN_OUTPUT "${out}" PARENT_SCOPE)
endfunction()

function(expect_in haystack needle what)
    string(FIND "${haystack}" "${needle}" at)
    if(at EQUAL -1)
        message(FATAL_ERROR "${what}:\n${haystack}")
    endif()
endfunction()

function(check_install kind build prefix)
    run(${CMAKE_COMMAND} --install ${build} --prefix ${prefix})

    # find_package(zuno-keymapmanager) and the zuno::keymapmanager target.
    run(${CMAKE_COMMAND} -S ${SOURCE_DIR}/tests/install/host -B ${prefix}-host
        -DCMAKE_PREFIX_PATH=${prefix} -DCMAKE_CXX_COMPILER=${CXX_COMPILER})
    run(${CMAKE_COMMAND} --build ${prefix}-host)
    run(${CMAKE_COMMAND} -E env LD_LIBRARY_PATH=${prefix}/lib ${prefix}-host/keymap-host)

    # pkg-config; a static archive needs --static for its private libraries.
    file(GLOB pcdir ${prefix}/lib*/pkgconfig)
    set(static_flag)
    if(kind STREQUAL "STATIC")
        set(static_flag --static)
    endif()
    run(${CMAKE_COMMAND} -E env PKG_CONFIG_PATH=${pcdir}
        pkg-config ${static_flag} --cflags --libs zuno-keymapmanager)
    string(STRIP "${RUN_OUTPUT}" flags)
    if(flags MATCHES "-std=")
        message(FATAL_ERROR "the .pc file chooses the host's language standard: ${flags}")
    endif()
    separate_arguments(flags UNIX_COMMAND "${flags}")
    run(${CXX_COMPILER} ${SOURCE_DIR}/tests/install/host/main.cpp ${flags} -o ${prefix}-host-pc)
    run(${CMAKE_COMMAND} -E env LD_LIBRARY_PATH=${prefix}/lib ${prefix}-host-pc)

    file(GLOB shared_objects ${prefix}/lib*/libzuno-keymapmanager.so*)
    file(GLOB archives ${prefix}/lib*/libzuno-keymapmanager.a)
    if(kind STREQUAL "STATIC")
        if(shared_objects OR NOT archives)
            message(FATAL_ERROR "the static install has no archive, or a shared object")
        endif()
    else()
        # The shared object carries its major version, and exports nothing internal.
        file(GLOB soname ${prefix}/lib*/libzuno-keymapmanager.so.1)
        if(NOT soname OR archives)
            message(FATAL_ERROR "the shared install has no libzuno-keymapmanager.so.1, or an archive")
        endif()
        run(nm -D -C --defined-only ${soname})
        foreach(internal "zunokeymapmanager::json::" "zunokeymapmanager::labels::"
                "zunokeymapmanager::document::" "zunokeymapmanager::check::" "MakeItemOfType")
            string(FIND "${RUN_OUTPUT}" "${internal}" at)
            if(NOT at EQUAL -1)
                message(FATAL_ERROR "internal symbols are exported: ${internal}")
            endif()
        endforeach()
    endif()

    # The installed tool runs from its own place, without help finding the library.
    if(EXISTS ${prefix}/bin/zuno-keymap)
        run(${prefix}/bin/zuno-keymap --version)
        run(${prefix}/bin/zuno-keymap check ${SOURCE_DIR}/examples/shooter.json)
        expect_in("${RUN_OUTPUT}" "ok (8 items)" "the installed zuno-keymap did not check the example clean")
    endif()
endfunction()

file(REMOVE_RECURSE ${WORK_DIR})
file(MAKE_DIRECTORY ${WORK_DIR})

check_install(${LIBRARY_TYPE} ${BUILD_DIR} ${WORK_DIR}/${LIBRARY_TYPE})
check_install(${OTHER_LIBRARY_TYPE} ${OTHER_BUILD_DIR} ${WORK_DIR}/${OTHER_LIBRARY_TYPE})
