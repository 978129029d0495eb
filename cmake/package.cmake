# The installed package: bin/ (Kitbag.dll and the compiler's runtime), lib/ (import library and
# CMake files), include/kitbag/.
include(GNUInstallDirs)
include(CMakePackageConfigHelpers)

set(package_folder "${CMAKE_INSTALL_LIBDIR}/cmake/Kitbag")

install(TARGETS Kitbag KitbagInterfaces EXPORT KitbagTargets
    RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR}
    ARCHIVE DESTINATION ${CMAKE_INSTALL_LIBDIR}
    FILE_SET HEADERS DESTINATION ${CMAKE_INSTALL_INCLUDEDIR})
install(FILES ${KITBAG_COMPILER_RUNTIME} DESTINATION ${CMAKE_INSTALL_BINDIR})
install(EXPORT KitbagTargets NAMESPACE Kitbag:: DESTINATION ${package_folder})

configure_package_config_file(
    "${CMAKE_CURRENT_LIST_DIR}/KitbagConfig.cmake.in" "${PROJECT_BINARY_DIR}/KitbagConfig.cmake"
    INSTALL_DESTINATION ${package_folder})
write_basic_package_version_file("${PROJECT_BINARY_DIR}/KitbagConfigVersion.cmake"
    COMPATIBILITY SameMajorVersion)
install(FILES "${PROJECT_BINARY_DIR}/KitbagConfig.cmake" "${PROJECT_BINARY_DIR}/KitbagConfigVersion.cmake"
    DESTINATION ${package_folder})
