# What `cpack` makes: one Debian package for programs that run, one for their developers, one for people at a terminal.
set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_STRIP_FILES ON)
set(CPACK_VERBATIM_VARIABLES ON)
set(CPACK_PRE_BUILD_SCRIPTS ${PROJECT_SOURCE_DIR}/cmake/PackageModes.cmake)
set(CPACK_PACKAGE_DIRECTORY ${PROJECT_BINARY_DIR}/packages)
set(CPACK_PACKAGE_VENDOR "The OrvConfigure authors")
set(CPACK_PACKAGE_CONTACT "The OrvConfigure authors <authors@orvconfigure.example>")
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "")  # each package has a summary of its own
set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_COMPRESSION_TYPE xz)
set(CPACK_DEBIAN_PACKAGE_SECTION science)

set(version "${PROJECT_VERSION}")
set(library_package "liborvconfigure${PROJECT_VERSION_MAJOR}")

# What the packaging rules ask of every package: its changes, in their own form and compressed without a time.
file(WRITE ${PROJECT_BINARY_DIR}/changelog "orvconfigure (${version}) unstable; urgency=medium

  * What has changed is told in CHANGELOG.md of the sources.

 -- ${CPACK_PACKAGE_CONTACT}  Sat, 21 Nov 2026 12:00:00 +0000
")
execute_process(COMMAND gzip -9nkf ${PROJECT_BINARY_DIR}/changelog)

# orv_package(<component> <package> <summary> <description> [DEPENDS ...] [NATIVE])
# NATIVE packages hold compiled code: what they link to is found in them.
function(orv_package component package summary description)
  cmake_parse_arguments(ARG "NATIVE" "DEPENDS" "" ${ARGN})
  string(TOUPPER ${component} upper)
  set(CPACK_DEBIAN_${upper}_PACKAGE_NAME ${package} PARENT_SCOPE)
  set(CPACK_DEBIAN_${upper}_DESCRIPTION "${summary}\n${description}" PARENT_SCOPE)
  set(CPACK_DEBIAN_${upper}_PACKAGE_DEPENDS "${ARG_DEPENDS}" PARENT_SCOPE)
  set(CPACK_DEBIAN_${upper}_PACKAGE_SHLIBDEPS ${ARG_NATIVE} PARENT_SCOPE)
  install(FILES ${PROJECT_SOURCE_DIR}/LICENSE DESTINATION ${CMAKE_INSTALL_DATADIR}/doc/${package} RENAME copyright
    COMPONENT ${component})
  install(FILES ${PROJECT_BINARY_DIR}/changelog.gz DESTINATION ${CMAKE_INSTALL_DATADIR}/doc/${package}
    COMPONENT ${component})
  set(CPACK_COMPONENTS_ALL ${CPACK_COMPONENTS_ALL} ${component} PARENT_SCOPE)
endfunction()

set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS_PRIVATE_DIRS ${CMAKE_LIBRARY_OUTPUT_DIRECTORY})
set(CPACK_COMPONENTS_ALL)
orv_package(library ${library_package} "configuration library of a hydrographic survey suite"
  "The library, its coordinate module, and the settings, units, file types and\ncoordinate systems that every installation starts from."
  NATIVE)
# Packages that link to the library learn from the first which version they need, and the loader from the second.
file(WRITE ${PROJECT_BINARY_DIR}/shlibs
  "liborvconfigure ${PROJECT_VERSION_MAJOR} ${library_package} (>= ${version})\n")
file(WRITE ${PROJECT_BINARY_DIR}/triggers "activate-noawait ldconfig\n")
file(CHMOD ${PROJECT_BINARY_DIR}/shlibs ${PROJECT_BINARY_DIR}/triggers PERMISSIONS OWNER_READ OWNER_WRITE GROUP_READ WORLD_READ)
set(CPACK_DEBIAN_LIBRARY_PACKAGE_CONTROL_EXTRA "${PROJECT_BINARY_DIR}/shlibs;${PROJECT_BINARY_DIR}/triggers")
set(CPACK_DEBIAN_LIBRARY_PACKAGE_SECTION libs)
orv_package(development liborvconfigure-dev "configuration library of a hydrographic survey suite: development files"
  "Headers, the package for CMake and the description for pkg-config."
  DEPENDS "${library_package} (= ${version})")
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_SECTION libdevel)
orv_package(tools orvcfg "looks after installations and projects of a hydrographic survey suite"
  "The command line host: settings, paths, files, geoid grids, reduced heights,\nmessages, old files and users; with manual pages and shell completion."
  DEPENDS "${library_package} (= ${version})" NATIVE)
if(ORV_PYTHON_MODULE)
  orv_package(python python3-orvconfigure "configuration library of a hydrographic survey suite: module for Python"
    "Configuration files, folders of projects, heights on NumPy arrays, tides, sound\nvelocity profiles and names of logs for scripts."
    DEPENDS "${library_package} (= ${version}), python3 (>= ${ORV_PYTHON_VERSION}), python3 (<< ${ORV_PYTHON_NEXT}), python3-numpy"
    NATIVE)
  set(CPACK_DEBIAN_PYTHON_PACKAGE_SECTION python)
endif()
include(CPack)
