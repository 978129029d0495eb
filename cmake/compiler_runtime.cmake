# The compiler's runtime DLLs. They travel beside Kitbag.dll: its interface passes standard strings
# and exceptions, so the library and the programs that load it must share one runtime.
set(KITBAG_COMPILER_RUNTIME)
foreach(name IN ITEMS libstdc++-6.dll libgcc_s_dw2-1.dll libwinpthread-1.dll)
    execute_process(COMMAND ${CMAKE_CXX_COMPILER} -print-file-name=${name}
        OUTPUT_VARIABLE path OUTPUT_STRIP_TRAILING_WHITESPACE)
    if(NOT IS_ABSOLUTE "${path}")
        find_file(path_of_${name} ${name} PATH_SUFFIXES lib bin REQUIRED)
        set(path "${path_of_${name}}")
    endif()
    list(APPEND KITBAG_COMPILER_RUNTIME "${path}")
endforeach()

file(COPY ${KITBAG_COMPILER_RUNTIME} DESTINATION "${CMAKE_RUNTIME_OUTPUT_DIRECTORY}")
