# Compares the plain functions that a library exports with a kept list of their names.
execute_process(COMMAND "${objdump}" --private-headers "${library}"
    OUTPUT_VARIABLE headers COMMAND_ERROR_IS_FATAL ANY)
string(REGEX MATCH "\\[Ordinal/Name Pointer\\] Table.*" names "${headers}")
# A name stands at the end of its line; the system's calling convention adds @bytes to a second one.
string(REGEX MATCHALL "[ \t](KB_|Dll)[A-Za-z0-9]+\n" names "${names}")
list(TRANSFORM names STRIP)
list(SORT names)

file(STRINGS "${kept}" expected)
set(lost ${expected})
list(REMOVE_ITEM lost ${names})
set(new ${names})
list(REMOVE_ITEM new ${expected})
list(LENGTH names count)
message("${count} exported functions; lost: ${lost}; new: ${new}")
if(lost OR new)
    message(FATAL_ERROR "The exported functions are not those of ${kept}")
endif()
