# The warnings that every piece of this project is built with; each is an error unless
# KITBAG_WARNINGS_AS_ERRORS is off.
#
# -Wnon-virtual-dtor is left out: it fires for every class that implements a COM interface, whose
# lifetime is its reference count. -Wnull-dereference fires inside the standard library's streams.
function(kitbag_set_warnings target)
    target_compile_options(${target} PRIVATE $<$<COMPILE_LANGUAGE:CXX>:
        $<$<BOOL:${KITBAG_WARNINGS_AS_ERRORS}>:-Werror>
        -Wall -Wextra -Wpedantic -Wconversion -Wsign-conversion -Wshadow -Wold-style-cast
        -Wcast-qual -Wformat=2 -Wimplicit-fallthrough -Woverloaded-virtual -Wduplicated-cond
        -Wlogical-op>)
endfunction()
