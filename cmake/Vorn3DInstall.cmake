# `cmake --install <build> --prefix P` installs the engine for C++ hosts: the headers
# (include/vorn3d, the same include root as engine/), the static library vorn3d and a
# CMake package, so that a host project writes
#   find_package(Vorn3D REQUIRED)
#   target_link_libraries(game PRIVATE Vorn3D::vorn3d)
include(GNUInstallDirs)
include(CMakePackageConfigHelpers)

set(VORN_INSTALL_CMAKEDIR ${CMAKE_INSTALL_LIBDIR}/cmake/Vorn3D)

install(TARGETS vorn3d EXPORT Vorn3DTargets
        ARCHIVE DESTINATION ${CMAKE_INSTALL_LIBDIR}
        INCLUDES DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/vorn3d)
install(DIRECTORY ${PROJECT_SOURCE_DIR}/engine/
        DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/vorn3d
        FILES_MATCHING PATTERN "*.h")
install(EXPORT Vorn3DTargets NAMESPACE Vorn3D:: DESTINATION ${VORN_INSTALL_CMAKEDIR})

configure_package_config_file(${CMAKE_CURRENT_LIST_DIR}/Vorn3DConfig.cmake.in
                              ${PROJECT_BINARY_DIR}/Vorn3DConfig.cmake
                              INSTALL_DESTINATION ${VORN_INSTALL_CMAKEDIR})
write_basic_package_version_file(${PROJECT_BINARY_DIR}/Vorn3DConfigVersion.cmake
                                 COMPATIBILITY SameMinorVersion)
install(FILES ${PROJECT_BINARY_DIR}/Vorn3DConfig.cmake ${PROJECT_BINARY_DIR}/Vorn3DConfigVersion.cmake
        DESTINATION ${VORN_INSTALL_CMAKEDIR})
