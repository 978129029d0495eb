# Installs the package, copies the consumer out of the tree, builds it and runs it.
set(folder "${build}/package-test")
set(package "${folder}/package")
file(REMOVE_RECURSE "${folder}")
file(COPY "${consumer}" DESTINATION "${folder}")

function(run)
    execute_process(COMMAND ${ARGN} COMMAND_ERROR_IS_FATAL ANY)
endfunction()

run(${CMAKE_COMMAND} --install "${build}" --prefix "${package}")
run(${CMAKE_COMMAND} -S "${folder}/consumer" -B "${folder}/build" -G "${generator}"
    -D "CMAKE_TOOLCHAIN_FILE=${toolchain}" -D "Kitbag_DIR=${package}/lib/cmake/Kitbag")
run(${CMAKE_COMMAND} --build "${folder}/build")
run(${CMAKE_COMMAND} --install "${folder}/build" --prefix "${package}")
run("${emulator}" "${package}/bin/consumer.exe")
