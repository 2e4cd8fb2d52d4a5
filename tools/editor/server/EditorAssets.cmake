# zuno_km_editor_assets(OUTPUT [SCHEMA_ONLY]): a rule that writes OUTPUT, a
# C++ source holding the editor page (tools/editor/page/*), the format's
# schema and the templates as bytes (PageAssets.h); with SCHEMA_ONLY, no page. Used by
# the editor library.
set(ZUNO_KM_EDITOR_DIR ${CMAKE_CURRENT_LIST_DIR})
function(zuno_km_editor_assets output)
    # The schema as the build writes it (check/CMakeLists.txt).
    set(files ${ZUNO_KM_SCHEMA_FILE})
    if(NOT "SCHEMA_ONLY" IN_LIST ARGN)
        file(GLOB page CONFIGURE_DEPENDS ${ZUNO_KM_EDITOR_DIR}/../page/*)
        list(PREPEND files ${page})
    endif()
    # The layouts "New from template" offers: ordinary documents of examples/.
    set(templates)
    foreach(name shooter moba racing gamepad)
        list(APPEND templates ${PROJECT_SOURCE_DIR}/examples/${name}.json)
    endforeach()
    add_custom_command(OUTPUT ${output}
        COMMAND ${CMAKE_COMMAND} -DOUTPUT=${output} "-DFILES=${files}" "-DTEMPLATES=${templates}"
            -P ${ZUNO_KM_EDITOR_DIR}/EmbedFiles.cmake
        DEPENDS ${files} ${templates} zuno-keymap-schema-file ${ZUNO_KM_EDITOR_DIR}/EmbedFiles.cmake
        COMMENT "Embedding the editor page"
        VERBATIM)
endfunction()
