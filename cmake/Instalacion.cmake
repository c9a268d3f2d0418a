# Install rules: library, headers under include/utilvel90/, CMake package and pkg-config file. What programs need to
# run is the component `runtime`, what they need to be built `dev`.

set(paquete ${CMAKE_INSTALL_LIBDIR}/cmake/UtilVel90)
install(TARGETS UtilVel90 EXPORT UtilVel90Targets
  LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR} COMPONENT runtime NAMELINK_COMPONENT dev
  RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR} COMPONENT runtime
  ARCHIVE DESTINATION ${CMAKE_INSTALL_LIBDIR} COMPONENT dev
  FILE_SET HEADERS DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/utilvel90 COMPONENT dev)
install(EXPORT UtilVel90Targets NAMESPACE UtilVel90:: DESTINATION ${paquete} COMPONENT dev)
configure_package_config_file(cmake/UtilVel90Config.cmake.in ${PROJECT_BINARY_DIR}/UtilVel90Config.cmake
  INSTALL_DESTINATION ${paquete})
write_basic_package_version_file(${PROJECT_BINARY_DIR}/UtilVel90ConfigVersion.cmake
  COMPATIBILITY SameMajorVersion)
install(FILES
  ${PROJECT_BINARY_DIR}/UtilVel90Config.cmake ${PROJECT_BINARY_DIR}/UtilVel90ConfigVersion.cmake
  DESTINATION ${paquete} COMPONENT dev)
# From the pkg-config file up to the prefix, so that the installation can be moved.
file(RELATIVE_PATH pc_hasta_prefijo /${CMAKE_INSTALL_LIBDIR}/pkgconfig /)
configure_file(cmake/utilvel90.pc.in ${PROJECT_BINARY_DIR}/utilvel90.pc @ONLY)
install(FILES ${PROJECT_BINARY_DIR}/utilvel90.pc DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig COMPONENT dev)
