# Strict warnings on our own targets only: third-party headers come in as system includes. They become
# errors where ORVEX_WERROR is on (make and CI turn it on); an embedder's compiler, newer or older than
# ours, may warn where ours does not, and that must not break their build.
option(ORVEX_WERROR "Treat compiler warnings in Orvex's own targets as errors" OFF)
function(orvex_strict_warnings target)
  target_compile_options(${target} PRIVATE
    -Wall -Wextra -Wpedantic -Wconversion -Wshadow -Wnon-virtual-dtor -Woverloaded-virtual
    -Wimplicit-fallthrough -Wold-style-cast -Wundef -Wzero-as-null-pointer-constant)
  if(ORVEX_WERROR)
    target_compile_options(${target} PRIVATE -Werror)
  endif()
endfunction()
