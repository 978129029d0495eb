# The installed package: bin/ (Kitbag.dll without symbols, its symbols in a file of their own, the
# compiler's runtime), lib/ (import libraries and CMake files), include/kitbag/.
include(GNUInstallDirs)
include(CMakePackageConfigHelpers)

set(package_folder "${CMAKE_INSTALL_LIBDIR}/cmake/Kitbag")

install(TARGETS Kitbag KitbagInterfaces EXPORT KitbagTargets
    RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR}
    ARCHIVE DESTINATION ${CMAKE_INSTALL_LIBDIR}
    FILE_SET HEADERS DESTINATION ${CMAKE_INSTALL_INCLUDEDIR})
install(EXPORT KitbagTargets NAMESPACE Kitbag:: DESTINATION ${package_folder})

# Debuggers find the symbols beside the library, by the name and checksum that it keeps of them.
install(CODE "
    set(library \"\$ENV{DESTDIR}\${CMAKE_INSTALL_PREFIX}/${CMAKE_INSTALL_BINDIR}/Kitbag.dll\")
    foreach(arguments IN ITEMS
            \"--only-keep-debug;\${library};\${library}.debug\"
            \"--strip-all;\${library}\"
            \"--add-gnu-debuglink=\${library}.debug;\${library}\")
        execute_process(COMMAND \"${CMAKE_OBJCOPY}\" \${arguments} COMMAND_ERROR_IS_FATAL ANY)
    endforeach()")

# The compiler's runtime as it ships with the package; kitbag_copy_runtime takes it from there.
install(FILES ${KITBAG_COMPILER_RUNTIME} DESTINATION ${CMAKE_INSTALL_BINDIR})
set(KITBAG_RUNTIME_NAMES Kitbag.dll)
foreach(file IN LISTS KITBAG_COMPILER_RUNTIME)
    cmake_path(GET file FILENAME name)
    list(APPEND KITBAG_RUNTIME_NAMES ${name})
endforeach()

# For the linkers of Visual C++ and its kin: the plain functions.
find_program(KITBAG_DLLTOOL NAMES llvm-dlltool DOC "Makes the import library for Visual C++'s linker")
if(KITBAG_DLLTOOL)
    set(definition "${PROJECT_BINARY_DIR}/Kitbag.def")
    set(import_library "${PROJECT_BINARY_DIR}/lib/Kitbag.lib")
    file(STRINGS "${PROJECT_SOURCE_DIR}/kitbag/exported_functions.txt" functions REGEX "^KB_")
    list(JOIN functions "\n" functions)
    file(CONFIGURE OUTPUT "${definition}" CONTENT "LIBRARY Kitbag.dll\nEXPORTS\n@functions@\n" @ONLY)
    file(MAKE_DIRECTORY "${PROJECT_BINARY_DIR}/lib")
    add_custom_command(OUTPUT "${import_library}"
        COMMAND "${KITBAG_DLLTOOL}" -m i386 -d "${definition}" -l "${import_library}"
        DEPENDS "${definition}" VERBATIM)
    add_custom_target(kitbag_visual_c_library ALL DEPENDS "${import_library}")
    install(FILES "${import_library}" DESTINATION ${CMAKE_INSTALL_LIBDIR})
else()
    message(STATUS "Without llvm-dlltool the package has no Kitbag.lib for Visual C++'s linker")
endif()

configure_package_config_file(
    "${CMAKE_CURRENT_LIST_DIR}/KitbagConfig.cmake.in" "${PROJECT_BINARY_DIR}/KitbagConfig.cmake"
    INSTALL_DESTINATION ${package_folder} PATH_VARS CMAKE_INSTALL_BINDIR)
write_basic_package_version_file("${PROJECT_BINARY_DIR}/KitbagConfigVersion.cmake"
    COMPATIBILITY SameMajorVersion)
install(FILES
    "${PROJECT_BINARY_DIR}/KitbagConfig.cmake" "${PROJECT_BINARY_DIR}/KitbagConfigVersion.cmake"
    "${CMAKE_CURRENT_LIST_DIR}/mingw32.cmake"
    DESTINATION ${package_folder})
install(FILES "${PROJECT_SOURCE_DIR}/README.md" DESTINATION .)

set(CPACK_GENERATOR ZIP)
set(CPACK_PACKAGE_FILE_NAME "Kitbag-${PROJECT_VERSION}-win32")
set(CPACK_PACKAGE_DIRECTORY "${PROJECT_BINARY_DIR}")
include(CPack)
