# Strict warnings for the project's own targets only; third-party headers come in as system headers.
function(zuno_km_warnings target)
    target_compile_options(${target} PRIVATE -Wall -Wextra -Wpedantic -Werror)
endfunction()
