include(CMakePackageConfigHelpers)

set(ZUNO_KM_CMAKE_DIR ${CMAKE_INSTALL_LIBDIR}/cmake/zuno-keymapmanager)

set(ZUNO_KM_INSTALL_TARGETS zuno-keymapmanager)
if(TARGET zuno-keymap)
    list(APPEND ZUNO_KM_INSTALL_TARGETS zuno-keymap)
endif()
install(TARGETS ${ZUNO_KM_INSTALL_TARGETS}
    EXPORT zuno-keymapmanager-targets
    LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR}
    ARCHIVE DESTINATION ${CMAKE_INSTALL_LIBDIR}
    RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR}
    INCLUDES DESTINATION ${CMAKE_INSTALL_INCLUDEDIR})
install(DIRECTORY include/zuno-keymapmanager DESTINATION ${CMAKE_INSTALL_INCLUDEDIR})

install(EXPORT zuno-keymapmanager-targets
    NAMESPACE zuno::
    FILE zuno-keymapmanager-targets.cmake
    DESTINATION ${ZUNO_KM_CMAKE_DIR})
configure_package_config_file(cmake/zuno-keymapmanager-config.cmake.in
    ${CMAKE_CURRENT_BINARY_DIR}/zuno-keymapmanager-config.cmake
    INSTALL_DESTINATION ${ZUNO_KM_CMAKE_DIR})
write_basic_package_version_file(
    ${CMAKE_CURRENT_BINARY_DIR}/zuno-keymapmanager-config-version.cmake
    COMPATIBILITY SameMajorVersion)
install(FILES
    ${CMAKE_CURRENT_BINARY_DIR}/zuno-keymapmanager-config.cmake
    ${CMAKE_CURRENT_BINARY_DIR}/zuno-keymapmanager-config-version.cmake
    DESTINATION ${ZUNO_KM_CMAKE_DIR})

# The .pc file finds its prefix from its own location, so an installed tree can move.
if(IS_ABSOLUTE "${CMAKE_INSTALL_LIBDIR}")
    set(ZUNO_KM_PC_PREFIX "${CMAKE_INSTALL_PREFIX}")
else()
    file(RELATIVE_PATH ZUNO_KM_PC_UP "/${CMAKE_INSTALL_LIBDIR}/pkgconfig" "/")
    set(ZUNO_KM_PC_PREFIX "\${pcfiledir}/${ZUNO_KM_PC_UP}")
endif()
configure_file(cmake/zuno-keymapmanager.pc.in ${CMAKE_CURRENT_BINARY_DIR}/zuno-keymapmanager.pc @ONLY)
install(FILES ${CMAKE_CURRENT_BINARY_DIR}/zuno-keymapmanager.pc
    DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig)
