# zuno_km_editor_assets(OUTPUT [SCHEMA_ONLY]): a rule that writes OUTPUT, a
# C++ source holding the editor page (tools/editor/page/*) and the format's
# schema as bytes (PageAssets.h); with SCHEMA_ONLY, the schema alone. Used by
# the editor library.
set(ZUNO_KM_EDITOR_DIR ${CMAKE_CURRENT_LIST_DIR})
function(zuno_km_editor_assets output)
    # The schema as the build writes it (check/CMakeLists.txt).
    set(files ${ZUNO_KM_SCHEMA_FILE})
    if(NOT "SCHEMA_ONLY" IN_LIST ARGN)
        file(GLOB page CONFIGURE_DEPENDS ${ZUNO_KM_EDITOR_DIR}/../page/*)
        list(PREPEND files ${page})
    endif()
    add_custom_command(OUTPUT ${output}
        COMMAND ${CMAKE_COMMAND} -DOUTPUT=${output} "-DFILES=${files}"
            -P ${ZUNO_KM_EDITOR_DIR}/EmbedFiles.cmake
        DEPENDS ${files} zuno-keymap-schema-file ${ZUNO_KM_EDITOR_DIR}/EmbedFiles.cmake
        COMMENT "Embedding the editor page"
        VERBATIM)
endfunction()
