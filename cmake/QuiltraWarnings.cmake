# Warnings apply to our own targets only (PRIVATE), never to consumers.
function(quiltra_set_warnings target)
  target_compile_options(${target} PRIVATE -Wall -Wextra -Wpedantic)
  if(QUILTRA_WERROR)
    target_compile_options(${target} PRIVATE -Werror)
  endif()
endfunction()
