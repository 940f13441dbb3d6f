# Compile options shared by everything we build, and one function for each kind of target.

add_library(orv_options INTERFACE)
if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
  # GCC 12 sees overlaps in joined strings that aren't there (its bug 105651).
  target_compile_options(orv_options INTERFACE -Wno-restrict)
endif()
target_compile_options(orv_options INTERFACE -Wall -Wextra -Wconversion -Wshadow -Werror
  # Heights must come out the same on every machine: no fused multiply-add, no fast-math.
  -ffp-contract=off
  # Nobody replaces our functions from outside, so calls among them needn't go through the linkage table.
  -fno-semantic-interposition)
target_link_options(orv_options INTERFACE -Wl,-Bsymbolic-functions)
if(ORV_SANITIZE)
  # Line numbers are all that a report needs. Targets that are built more often than run (ORV_BUILT_QUICKLY) take half
  # the time without optimisation.
  target_compile_options(orv_options INTERFACE -fsanitize=${ORV_SANITIZE} -fno-omit-frame-pointer -g1
    $<IF:$<BOOL:$<TARGET_PROPERTY:ORV_BUILT_QUICKLY>>,-O0,-O1>
    $<$<CXX_COMPILER_ID:GNU>:-Wno-maybe-uninitialized>)  # the instrumented code confuses it
  target_link_options(orv_options INTERFACE -fsanitize=${ORV_SANITIZE})
  if(ORV_SANITIZE MATCHES "undefined")
    target_compile_options(orv_options INTERFACE -fno-sanitize-recover=undefined)
  endif()
endif()
if(ORV_FUZZ)
  target_compile_options(orv_options INTERFACE -fsanitize=fuzzer-no-link)
endif()

# orv_folder(<name> SOURCES a.cpp b.cpp): the objects of one folder of src/, linked into the shared library.
function(orv_folder name)
  cmake_parse_arguments(ARG "" "" "SOURCES" ${ARGN})
  add_library(orv_${name} OBJECT ${ARG_SOURCES})
  target_include_directories(orv_${name} PUBLIC ${PROJECT_SOURCE_DIR}/src)
  target_link_libraries(orv_${name} PRIVATE orv_options)
  set_property(GLOBAL APPEND PROPERTY ORV_FOLDERS orv_${name})
endfunction()

# orv_test(<name> SOURCES ...): one test program a folder, one test of ctest.
function(orv_test name)
  cmake_parse_arguments(ARG "" "" "SOURCES" ${ARGN})
  add_executable(${name} ${ARG_SOURCES})
  target_include_directories(${name} PRIVATE ${PROJECT_SOURCE_DIR}/tests ${PROJECT_SOURCE_DIR}/src)
  target_compile_definitions(${name} PRIVATE ORV_SOURCE_DIR="${PROJECT_SOURCE_DIR}" ORV_BINARY_DIR="${PROJECT_BINARY_DIR}")
  target_link_libraries(${name} PRIVATE orv_options orvconfigure orv_testing GTest::gtest_main)
  target_compile_options(${name} PRIVATE $<$<CONFIG:Release>:-O1>)  # tests are built more often than run
  set_target_properties(${name} PROPERTIES ORV_BUILT_QUICKLY ON)
  add_test(NAME ${name} COMMAND ${name} --gtest_brief=1)
endfunction()

