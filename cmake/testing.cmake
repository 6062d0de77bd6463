# GoogleTest, built for the target from Debian's sources.
set(INSTALL_GTEST OFF CACHE BOOL "" FORCE)
set(BUILD_GMOCK OFF CACHE BOOL "" FORCE)
add_subdirectory(/usr/src/googletest ${CMAKE_BINARY_DIR}/googletest EXCLUDE_FROM_ALL)
# Debian's sources compile with warnings we do not hold third-party code to.
foreach(t gtest gtest_main)
  if(TARGET ${t})
    target_compile_options(${t} PRIVATE -Wno-error)
  endif()
endforeach()

# zorvo_gtest(NAME SOURCES... [LIBS libs...]): one GoogleTest program, run
# under qemu through CTest on the no-SVE processor.
function(zorvo_gtest name)
  cmake_parse_arguments(ARG "" "" "SOURCES;LIBS" ${ARGN})
  add_executable(${name} ${ARG_SOURCES} ${ARG_UNPARSED_ARGUMENTS})
  target_link_libraries(${name} PRIVATE ${ARG_LIBS} gtest gtest_main pthread)
  add_test(NAME ${name} COMMAND ${name})
endfunction()
