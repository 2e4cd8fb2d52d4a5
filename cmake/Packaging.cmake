# Debian packages with `cpack -G DEB`, one for each install component:
#   libzuno-keymapmanager1       runtime: the shared object under its SONAME
#   libzuno-keymapmanager-dev    dev: headers, CMake package, pkg-config file
#   zuno-keymap                  tool: the command-line tool
# A static build has no runtime package; its archive goes into -dev.
set(CPACK_PACKAGE_NAME zuno-keymapmanager)
set(CPACK_PACKAGE_VERSION ${PROJECT_VERSION})
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "${PROJECT_DESCRIPTION}")
set(CPACK_PACKAGE_CONTACT "zuno-keymapmanager developers <keymapmanager@zuno.example.org>")
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_STRIP_FILES ON)
set(CPACK_GENERATOR DEB)

set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_COMPONENTS_ALL dev)
if(ZUNO_KM_LIBRARY_TYPE STREQUAL "SHARED")
    list(PREPEND CPACK_COMPONENTS_ALL runtime)
    set(CPACK_COMPONENT_DEV_DEPENDS runtime)
    set(CPACK_COMPONENT_TOOL_DEPENDS runtime)
endif()
if(TARGET zuno-keymap)
    list(APPEND CPACK_COMPONENTS_ALL tool)
endif()

set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
# The tool links the runtime package's library: dpkg-shlibdeps runs inside
# each component's staging folder and finds it in the runtime one beside it.
# The tool's dependency on that package comes from the component dependency.
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS_PRIVATE_DIRS ../runtime${CPACK_PACKAGING_INSTALL_PREFIX}/${CMAKE_INSTALL_LIBDIR})
set(CPACK_DEBIAN_ENABLE_COMPONENT_DEPENDS ON)
set(CPACK_DEBIAN_PACKAGE_HOMEPAGE "https://zuno.example.org/keymapmanager")

set(CPACK_DEBIAN_RUNTIME_PACKAGE_NAME libzuno-keymapmanager${PROJECT_VERSION_MAJOR})
set(CPACK_DEBIAN_RUNTIME_PACKAGE_SECTION libs)
set(CPACK_DEBIAN_RUNTIME_DESCRIPTION "library for keymap documents of a touch-screen input mapper
 Reads, checks and writes keymap documents, key captions and macro text.")
# The shlibs file lets packages built against this one depend on it; the
# ldconfig trigger comes with it.
set(CPACK_DEBIAN_PACKAGE_GENERATE_SHLIBS ON)
set(CPACK_DEBIAN_RUNTIME_PACKAGE_CONTROL_EXTRA ${CMAKE_CURRENT_LIST_DIR}/debian/triggers)

set(CPACK_DEBIAN_DEV_PACKAGE_NAME libzuno-keymapmanager-dev)
set(CPACK_DEBIAN_DEV_PACKAGE_SECTION libdevel)
set(CPACK_DEBIAN_DEV_PACKAGE_DEPENDS "libpoco-dev")
set(CPACK_DEBIAN_DEV_DESCRIPTION "development files of the keymap document library
 Headers, CMake package and pkg-config file for building hosts.")

set(CPACK_DEBIAN_TOOL_PACKAGE_NAME zuno-keymap)
set(CPACK_DEBIAN_TOOL_PACKAGE_SECTION utils)
set(CPACK_DEBIAN_TOOL_DESCRIPTION "command-line tool for keymap documents
 Checks, formats, lists and creates keymap documents.")

# Each package carries the copyright file and a compressed changelog.
configure_file(${CMAKE_CURRENT_LIST_DIR}/debian/changelog.in
    ${CMAKE_CURRENT_BINARY_DIR}/debian/changelog @ONLY)
execute_process(COMMAND gzip -9nf ${CMAKE_CURRENT_BINARY_DIR}/debian/changelog)
foreach(component IN LISTS CPACK_COMPONENTS_ALL)
    string(TOUPPER ${component} upper)
    install(FILES ${CMAKE_CURRENT_LIST_DIR}/debian/copyright
            ${CMAKE_CURRENT_BINARY_DIR}/debian/changelog.gz
        DESTINATION ${CMAKE_INSTALL_DATADIR}/doc/${CPACK_DEBIAN_${upper}_PACKAGE_NAME}
        COMPONENT ${component})
endforeach()

include(CPack)
