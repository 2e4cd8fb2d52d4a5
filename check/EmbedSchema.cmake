# Writes OUTPUT from TEMPLATE with the schema's text in pieces. The text is
# what the schema program GENERATOR prints (run under the cross build's
# EMULATOR, if any), kept as SCHEMA; or, where no program can run, the file
# SOURCE. Either file is rewritten only when its text changes, so an
# unchanged schema recompiles nothing.
if(SOURCE)
    file(READ ${SOURCE} text)
else()
    execute_process(COMMAND ${EMULATOR} ${GENERATOR}
        OUTPUT_VARIABLE text ERROR_VARIABLE errors RESULT_VARIABLE result)
    if(NOT result EQUAL 0 OR text STREQUAL "")
        message(FATAL_ERROR "The schema program ${GENERATOR} failed (${result}): ${errors}")
    endif()
    # A Windows program run under an emulator writes its lines ending in CR LF.
    string(REPLACE "\r\n" "\n" text "${text}")
    file(WRITE ${SCHEMA}.new "${text}")
    execute_process(COMMAND ${CMAKE_COMMAND} -E copy_if_different ${SCHEMA}.new ${SCHEMA})
    file(REMOVE ${SCHEMA}.new)
endif()

# Compilers need not take string literals longer than 64 KiB (some stop at 16 KiB).
string(LENGTH "${text}" length)
set(ZUNO_KM_SCHEMA_PARTS "")
set(offset 0)
while(offset LESS length)
    string(SUBSTRING "${text}" ${offset} 8000 part)
    string(APPEND ZUNO_KM_SCHEMA_PARTS "    R\"zunokeymapschema(${part})zunokeymapschema\",\n")
    math(EXPR offset "${offset} + 8000")
endwhile()
configure_file(${TEMPLATE} ${OUTPUT} @ONLY)
