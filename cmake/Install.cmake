# Install rules, split into the components the Debian packages are made of:
#   runtime  the shared object and its SONAME link
#   dev      headers, the link-time library name (or the static archive),
#            the CMake package and the pkg-config file
#   tool     the zuno-keymap command-line tool (see tools/zuno-keymap)
include(CMakePackageConfigHelpers)

set(ZUNO_KM_CMAKE_DIR ${CMAKE_INSTALL_LIBDIR}/cmake/zuno-keymapmanager)

install(TARGETS zuno-keymapmanager
    EXPORT zuno-keymapmanager-targets
    RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR} COMPONENT runtime
    LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR} COMPONENT runtime NAMELINK_COMPONENT dev
    ARCHIVE DESTINATION ${CMAKE_INSTALL_LIBDIR} COMPONENT dev
    INCLUDES DESTINATION ${CMAKE_INSTALL_INCLUDEDIR})
install(DIRECTORY include/zuno-keymapmanager DESTINATION ${CMAKE_INSTALL_INCLUDEDIR} COMPONENT dev)
install(FILES ${ZUNO_KM_GENERATED_INCLUDE}/zuno-keymapmanager/Version.h
    DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/zuno-keymapmanager COMPONENT dev)
install(FILES ${ZUNO_KM_GENERATED_INCLUDE}/zuno-keymapmanager/items/ItemHeaders.h
    DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/zuno-keymapmanager/items COMPONENT dev)

install(EXPORT zuno-keymapmanager-targets
    NAMESPACE zuno::
    FILE zuno-keymapmanager-targets.cmake
    DESTINATION ${ZUNO_KM_CMAKE_DIR}
    COMPONENT dev)
configure_package_config_file(cmake/zuno-keymapmanager-config.cmake.in
    ${CMAKE_CURRENT_BINARY_DIR}/zuno-keymapmanager-config.cmake
    INSTALL_DESTINATION ${ZUNO_KM_CMAKE_DIR})
write_basic_package_version_file(
    ${CMAKE_CURRENT_BINARY_DIR}/zuno-keymapmanager-config-version.cmake
    COMPATIBILITY SameMajorVersion)
install(FILES
    ${CMAKE_CURRENT_BINARY_DIR}/zuno-keymapmanager-config.cmake
    ${CMAKE_CURRENT_BINARY_DIR}/zuno-keymapmanager-config-version.cmake
    DESTINATION ${ZUNO_KM_CMAKE_DIR}
    COMPONENT dev)

# The .pc file finds its prefix from its own location, so an installed tree can move.
if(IS_ABSOLUTE "${CMAKE_INSTALL_LIBDIR}")
    set(ZUNO_KM_PC_PREFIX "${CMAKE_INSTALL_PREFIX}")
else()
    file(RELATIVE_PATH ZUNO_KM_PC_UP "/${CMAKE_INSTALL_LIBDIR}/pkgconfig" "/")
    set(ZUNO_KM_PC_PREFIX "\${pcfiledir}/${ZUNO_KM_PC_UP}")
endif()
# Poco appears in the public headers, so hosts link it either way; a static
# archive also needs the thread library, and its hosts the ZUNO_KM_STATIC define.
if(ZUNO_KM_LIBRARY_TYPE STREQUAL "STATIC")
    set(ZUNO_KM_PC_CFLAGS " -DZUNO_KM_STATIC")
else()
    set(ZUNO_KM_PC_CFLAGS "")
endif()
configure_file(cmake/zuno-keymapmanager.pc.in ${CMAKE_CURRENT_BINARY_DIR}/zuno-keymapmanager.pc @ONLY)
install(FILES ${CMAKE_CURRENT_BINARY_DIR}/zuno-keymapmanager.pc
    DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig
    COMPONENT dev)

if(TARGET zuno-keymap)
    install(TARGETS zuno-keymap RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR} COMPONENT tool)
    # The tool finds the library relative to itself (see tools/zuno-keymap),
    # except under /usr, where the loader finds it and a search path is wrong.
    if(UNIX AND NOT APPLE)
        install(CODE [[
            if(CMAKE_INSTALL_PREFIX STREQUAL "/usr")
                file(RPATH_REMOVE FILE "$ENV{DESTDIR}/usr/bin/zuno-keymap")
            endif()]]
            COMPONENT tool)
    endif()
endif()
