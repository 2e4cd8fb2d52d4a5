# Strict warnings, and the sanitizers asked for, on the project's own targets
# only: a project that adds this one as a subdirectory inherits neither, and
# third-party headers come in as system headers.
function(zuno_km_warnings target)
    target_compile_options(${target} PRIVATE -Wall -Wextra -Wpedantic)
    if(ZUNO_KM_WERROR)
        target_compile_options(${target} PRIVATE -Werror)
    endif()
    if(ZUNO_KM_SANITIZE)
        target_compile_options(${target} PRIVATE
            -fsanitize=${ZUNO_KM_SANITIZE} -fno-omit-frame-pointer -fno-sanitize-recover=all)
        target_link_options(${target} PRIVATE -fsanitize=${ZUNO_KM_SANITIZE})
    endif()
endfunction()
