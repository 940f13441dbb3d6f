# The reference in HTML, made on demand; a header or a document that Doxygen can't understand fails it.
find_program(ORV_DOXYGEN doxygen)
if(ORV_DOXYGEN)
  configure_file(${PROJECT_SOURCE_DIR}/docs/Doxyfile.in ${PROJECT_BINARY_DIR}/Doxyfile @ONLY)
  add_custom_target(reference COMMAND ${CMAKE_COMMAND} -E make_directory ${PROJECT_BINARY_DIR}/reference
    COMMAND ${ORV_DOXYGEN} ${PROJECT_BINARY_DIR}/Doxyfile
    COMMENT "Reference in reference/html/index.html")
endif()
