# Strict warnings, as errors, on our own targets only: third-party headers come in as system includes.
function(orvex_strict_warnings target)
  target_compile_options(${target} PRIVATE
    -Wall -Wextra -Wpedantic -Wconversion -Wshadow -Wnon-virtual-dtor -Woverloaded-virtual
    -Wimplicit-fallthrough -Werror)
endfunction()
