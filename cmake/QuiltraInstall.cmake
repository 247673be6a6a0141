include(GNUInstallDirs)
include(CMakePackageConfigHelpers)

install(TARGETS quiltra EXPORT QuiltraTargets
  LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR}
  ARCHIVE DESTINATION ${CMAKE_INSTALL_LIBDIR}
  RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR}
  INCLUDES DESTINATION ${CMAKE_INSTALL_INCLUDEDIR})
install(DIRECTORY ${PROJECT_SOURCE_DIR}/include/quiltra DESTINATION ${CMAKE_INSTALL_INCLUDEDIR})
install(FILES ${PROJECT_BINARY_DIR}/include/quiltra/core/Version.h
  DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/quiltra/core)

set(QUILTRA_CMAKE_DIR ${CMAKE_INSTALL_LIBDIR}/cmake/Quiltra)
install(EXPORT QuiltraTargets NAMESPACE Quiltra:: DESTINATION ${QUILTRA_CMAKE_DIR})
export(EXPORT QuiltraTargets NAMESPACE Quiltra::
  FILE ${PROJECT_BINARY_DIR}/QuiltraTargets.cmake)

configure_package_config_file(${PROJECT_SOURCE_DIR}/cmake/QuiltraConfig.cmake.in
  ${PROJECT_BINARY_DIR}/QuiltraConfig.cmake INSTALL_DESTINATION ${QUILTRA_CMAKE_DIR})
write_basic_package_version_file(${PROJECT_BINARY_DIR}/QuiltraConfigVersion.cmake
  COMPATIBILITY SameMinorVersion)
install(FILES ${PROJECT_BINARY_DIR}/QuiltraConfig.cmake
              ${PROJECT_BINARY_DIR}/QuiltraConfigVersion.cmake
        DESTINATION ${QUILTRA_CMAKE_DIR})

# Programs linked through pkg-config find a shared library outside the loader's own folders
# through the run-time path their link records; the loader's folders need none.
set(QUILTRA_PC_RPATH "")
get_filename_component(quiltra_libdir "${CMAKE_INSTALL_FULL_LIBDIR}" ABSOLUTE)
if(BUILD_SHARED_LIBS AND NOT quiltra_libdir IN_LIST CMAKE_CXX_IMPLICIT_LINK_DIRECTORIES)
  set(QUILTRA_PC_RPATH " -Wl,-rpath,\${libdir}")
endif()
configure_file(${PROJECT_SOURCE_DIR}/cmake/quiltra.pc.in ${PROJECT_BINARY_DIR}/quiltra.pc @ONLY)
install(FILES ${PROJECT_BINARY_DIR}/quiltra.pc DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig)
