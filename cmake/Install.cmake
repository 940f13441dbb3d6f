# What `cmake --install` lays down: library, headers, module, tools, package files.
include(CMakePackageConfigHelpers)

install(TARGETS orvconfigure EXPORT OrvConfigureTargets
  LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR} COMPONENT library NAMELINK_COMPONENT development)
install(DIRECTORY ${PROJECT_SOURCE_DIR}/src/ DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/orvconfigure COMPONENT development
  FILES_MATCHING PATTERN "*.h")
install(EXPORT OrvConfigureTargets NAMESPACE OrvConfigure:: COMPONENT development
  DESTINATION ${CMAKE_INSTALL_LIBDIR}/cmake/OrvConfigure)

configure_package_config_file(${PROJECT_SOURCE_DIR}/cmake/OrvConfigureConfig.cmake.in
  ${PROJECT_BINARY_DIR}/OrvConfigureConfig.cmake INSTALL_DESTINATION ${CMAKE_INSTALL_LIBDIR}/cmake/OrvConfigure)
write_basic_package_version_file(${PROJECT_BINARY_DIR}/OrvConfigureConfigVersion.cmake COMPATIBILITY SameMinorVersion)
configure_file(${PROJECT_SOURCE_DIR}/cmake/orvconfigure.pc.in ${PROJECT_BINARY_DIR}/orvconfigure.pc @ONLY)
install(FILES ${PROJECT_BINARY_DIR}/OrvConfigureConfig.cmake ${PROJECT_BINARY_DIR}/OrvConfigureConfigVersion.cmake
  DESTINATION ${CMAKE_INSTALL_LIBDIR}/cmake/OrvConfigure COMPONENT development)
install(FILES ${PROJECT_BINARY_DIR}/orvconfigure.pc DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig COMPONENT development)

# Beside the packages, where Debian's developers look for them.
set(documents ${CMAKE_INSTALL_DATADIR}/doc)
install(DIRECTORY ${PROJECT_SOURCE_DIR}/examples DESTINATION ${documents}/liborvconfigure-dev COMPONENT development
  PATTERN python EXCLUDE)
install(DIRECTORY ${PROJECT_SOURCE_DIR}/examples/python/ DESTINATION ${documents}/python3-orvconfigure/examples
  COMPONENT python)

# An example outside the tree, built against the installed package: what another application's developer does first.
if(NOT ORV_FUZZ)
  add_test(NAME install_example COMMAND ${CMAKE_COMMAND} -DBUILD=${PROJECT_BINARY_DIR} -DSOURCE=${PROJECT_SOURCE_DIR}
    -DCOMPILER=${CMAKE_CXX_COMPILER} "-DSANITIZE=${ORV_SANITIZE}" -P ${PROJECT_SOURCE_DIR}/cmake/InstallExample.cmake)
endif()
