# Sanitizers are opted into per build (see CMakePresets.json) and applied to our own
# targets only, so a consumer never inherits them.
function(quiltra_set_sanitizers target)
  if(QUILTRA_SANITIZE)
    target_compile_options(${target} PRIVATE -fsanitize=${QUILTRA_SANITIZE}
                                             -fno-omit-frame-pointer -fno-sanitize-recover=all)
    target_link_options(${target} PRIVATE -fsanitize=${QUILTRA_SANITIZE})
  endif()
endfunction()
