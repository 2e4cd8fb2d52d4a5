# Makes the Debian packages with cpack, checks what each one holds, and runs
# lintian on them: errors fail the test, warnings are only shown.
#
# Expects BUILD_DIR, WORK_DIR, LIBRARY_TYPE (SHARED or STATIC), HAS_TOOL and LINTIAN.

function(run)
    execute_process(COMMAND ${ARGN} RESULT_VARIABLE result OUTPUT_VARIABLE out ERROR_VARIABLE err)
    if(NOT result EQUAL 0)
        message(FATAL_ERROR "failed (${result}): ${ARGN}\n${out}\n${err}")
    endif()
    set(RUN_OUTPUT "${out}" PARENT_SCOPE)
endfunction()

# Unpacks `package` and fails unless every pattern names at least one file in it.
function(expect_files package)
    file(GLOB deb ${WORK_DIR}/${package}_*.deb)
    if(NOT deb)
        message(FATAL_ERROR "no package ${package} was made")
    endif()
    set(root ${WORK_DIR}/unpacked/${package})
    file(MAKE_DIRECTORY ${root})
    run(dpkg-deb -x ${deb} ${root})
    foreach(pattern ${ARGN})
        file(GLOB_RECURSE found LIST_DIRECTORIES false ${root}/${pattern})
        if(NOT found)
            run(dpkg-deb -c ${deb})
            message(FATAL_ERROR "${package} holds nothing like ${pattern}:\n${RUN_OUTPUT}")
        endif()
    endforeach()
    set(PACKAGE_ROOT ${root} PARENT_SCOPE)
endfunction()

file(REMOVE_RECURSE ${WORK_DIR})
file(MAKE_DIRECTORY ${WORK_DIR})
run(cpack -G DEB -B ${WORK_DIR} --config ${BUILD_DIR}/CPackConfig.cmake)

set(doc usr/share/doc/*/copyright usr/share/doc/*/changelog.gz)
set(dev_files usr/include/zuno-keymapmanager/keymapmanager.h
    usr/include/zuno-keymapmanager/api/KeymapManager.h
    usr/lib*/cmake/zuno-keymapmanager/zuno-keymapmanager-config.cmake
    usr/lib*/cmake/zuno-keymapmanager/zuno-keymapmanager-targets.cmake
    usr/lib*/pkgconfig/zuno-keymapmanager.pc ${doc})
if(LIBRARY_TYPE STREQUAL "SHARED")
    expect_files(libzuno-keymapmanager1 usr/lib*/libzuno-keymapmanager.so.1 ${doc})
    file(GLOB_RECURSE real ${PACKAGE_ROOT}/usr/lib*/libzuno-keymapmanager.so.1.*)
    file(GLOB_RECURSE soname_link ${PACKAGE_ROOT}/usr/lib*/libzuno-keymapmanager.so.1)
    file(GLOB_RECURSE dev_link ${PACKAGE_ROOT}/usr/lib*/libzuno-keymapmanager.so)
    if(NOT real OR NOT IS_SYMLINK "${soname_link}" OR dev_link)
        message(FATAL_ERROR "the runtime package needs the real file, the SONAME link, and no .so link")
    endif()
    expect_files(libzuno-keymapmanager-dev usr/lib*/libzuno-keymapmanager.so ${dev_files})
else()
    expect_files(libzuno-keymapmanager-dev usr/lib*/libzuno-keymapmanager.a ${dev_files})
endif()
if(HAS_TOOL)
    expect_files(zuno-keymap usr/bin/zuno-keymap ${doc})
endif()

file(GLOB debs ${WORK_DIR}/*.deb)
execute_process(COMMAND ${LINTIAN} --no-tag-display-limit ${debs}
    RESULT_VARIABLE result OUTPUT_VARIABLE out ERROR_VARIABLE err)
message(STATUS "lintian:\n${out}${err}")
if(out MATCHES "(^|\n)E: " OR NOT result EQUAL 0)
    message(FATAL_ERROR "lintian reports errors")
endif()
