# The library is made of object libraries, one a part (the caption tables, the
# core, the document check), each compiled once, as the library's own code:
# position independent, hidden unless exported, with the project's warnings.
function(zuno_km_library_part target)
    target_compile_definitions(${target} PRIVATE ZUNO_KM_BUILDING_LIBRARY)
    if(ZUNO_KM_LIBRARY_TYPE STREQUAL "STATIC")
        target_compile_definitions(${target} PRIVATE ZUNO_KM_STATIC)
    endif()
    set_target_properties(${target} PROPERTIES
        POSITION_INDEPENDENT_CODE ON
        CXX_VISIBILITY_PRESET hidden
        VISIBILITY_INLINES_HIDDEN ON)
    zuno_km_warnings(${target})
endfunction()
