# Instruments everything for the fuzz targets of fuzz/. Such a build is for these alone: exit() throws in it.
if(NOT CMAKE_CXX_COMPILER_ID STREQUAL "Clang")
  message(FATAL_ERROR "LINTARA_FUZZ needs Clang: -DCMAKE_CXX_COMPILER=clang++")
endif()
add_compile_options(-fsanitize=fuzzer-no-link,address,undefined -fno-sanitize-recover=all -fno-omit-frame-pointer
                    "SHELL:-include ${PROJECT_SOURCE_DIR}/fuzz/ended.h")
add_link_options(-fsanitize=address,undefined)
