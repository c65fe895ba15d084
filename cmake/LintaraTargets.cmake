# One small static library a subsystem folder, so that the layers are visible in the build files. Every .cpp of the
# folder belongs to it.
#
#   lintara_subsystem(align NEEDS settings store)
function(lintara_subsystem name)
  cmake_parse_arguments(ARG "" "" "EXCLUDE;NEEDS" ${ARGN})
  file(GLOB sources CONFIGURE_DEPENDS *.cpp)
  foreach(file IN LISTS ARG_EXCLUDE)
    list(REMOVE_ITEM sources ${CMAKE_CURRENT_SOURCE_DIR}/${file})
  endforeach()
  add_library(lintara_${name} STATIC ${sources})
  target_include_directories(lintara_${name} PUBLIC ${PROJECT_SOURCE_DIR}/src)
  foreach(need IN LISTS ARG_NEEDS)
    target_link_libraries(lintara_${name} PUBLIC lintara_${need})
  endforeach()
endfunction()

# The tests of one subsystem: one executable of every *_test.cpp in the folder, one CTest entry a test case.
#
#   lintara_tests(align)
function(lintara_tests name)
  cmake_parse_arguments(ARG "" "" "NEEDS" ${ARGN})
  file(GLOB sources CONFIGURE_DEPENDS *_test.cpp)
  if(NOT sources)
    return()
  endif()
  add_executable(${name}_test ${sources})
  target_link_libraries(${name}_test PRIVATE lintara_${name} lintara_test_support GTest::gtest_main)
  foreach(need IN LISTS ARG_NEEDS)
    target_link_libraries(${name}_test PRIVATE ${need})
  endforeach()
  gtest_discover_tests(${name}_test TEST_PREFIX ${name}/ DISCOVERY_TIMEOUT 60)
endfunction()
