# Packs the package, unpacks it into a path with blanks, builds a program from it the way that README
# tells, and runs it from its own folder. Runs the package's tool, too.
set(folder "${build}/package test")
file(REMOVE_RECURSE "${folder}")
file(COPY "${consumer}" DESTINATION "${folder}")

function(run)
    execute_process(COMMAND ${ARGN} COMMAND_ERROR_IS_FATAL ANY)
endfunction()

run(${CMAKE_CPACK_COMMAND} --config "${build}/CPackConfig.cmake" -B "${folder}")
file(GLOB archive "${folder}/*.zip")
file(ARCHIVE_EXTRACT INPUT "${archive}" DESTINATION "${folder}")
cmake_path(GET archive STEM LAST_ONLY name)
set(package "${folder}/${name}")

run(${CMAKE_COMMAND} -S "${folder}/consumer" -B "${folder}/build" -G "${generator}"
    -D "CMAKE_TOOLCHAIN_FILE=${package}/lib/cmake/Kitbag/mingw32.cmake"
    -D "CMAKE_PREFIX_PATH=${package}")
run(${CMAKE_COMMAND} --build "${folder}/build")
run("${emulator}" "${folder}/build/consumer.exe")
run("${emulator}" "${package}/bin/kitbag.exe" --help)
