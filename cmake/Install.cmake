# What is installed, by component: the library with the two that it imports, what hosts are built with,
# and the tool where it is built.
include(CMakePackageConfigHelpers)
set(package_dir ${CMAKE_INSTALL_LIBDIR}/cmake/velmorn64)

# The name without a version is with the library, not with the header: hosts load the library by it.
install(TARGETS velmorn64 quillet64 brantis64 EXPORT velmorn64Targets
  LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR} COMPONENT library
  ARCHIVE DESTINATION ${CMAKE_INSTALL_LIBDIR} COMPONENT development
  RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR} COMPONENT library)

install(FILES include/velmorn64.h DESTINATION ${CMAKE_INSTALL_INCLUDEDIR} COMPONENT development)
install(EXPORT velmorn64Targets NAMESPACE velmorn64:: DESTINATION ${package_dir}
  COMPONENT development)
configure_package_config_file(cmake/velmorn64Config.cmake.in velmorn64Config.cmake
  INSTALL_DESTINATION ${package_dir})
write_basic_package_version_file(velmorn64ConfigVersion.cmake COMPATIBILITY SameMinorVersion)
install(FILES ${CMAKE_CURRENT_BINARY_DIR}/velmorn64Config.cmake
              ${CMAKE_CURRENT_BINARY_DIR}/velmorn64ConfigVersion.cmake
        DESTINATION ${package_dir} COMPONENT development)

# How far the file lies below the prefix depends on the system's library folder.
file(RELATIVE_PATH prefix_from_pkgconfig /${CMAKE_INSTALL_LIBDIR}/pkgconfig /)
configure_file(cmake/velmorn64.pc.in velmorn64.pc @ONLY)
install(FILES ${CMAKE_CURRENT_BINARY_DIR}/velmorn64.pc
        DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig COMPONENT development)
install(DIRECTORY examples/consumer examples/hosts
        DESTINATION ${CMAKE_INSTALL_DATAROOTDIR}/doc/velmorn64-dev/examples COMPONENT development)

if(VELMORN64_BUILD_TOOLS)
  install(TARGETS velmorn RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR} COMPONENT tool)
endif()
