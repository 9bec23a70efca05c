# Where version 19 of clang is installed; ./test says so where it is not, and installs it in continuous integration.
if(SONVARA_SANITIZE OR APPLE)
  return()
endif()
find_program(SONVARA_CLANGXX_19 clang++-19)
if(SONVARA_CLANGXX_19)
  add_test(NAME macos_libcxx
    COMMAND nice -n 19 ${CMAKE_CURRENT_LIST_DIR}/compile ${CMAKE_CURRENT_BINARY_DIR}/libcxx ${CMAKE_CXX_COMPILER_LAUNCHER})
  # As in tools/build; and like the test tidy it begins early, as it takes minutes where nothing is in the cache.
  set_tests_properties(macos_libcxx PROPERTIES LABELS gate TIMEOUT 1200 COST 1000
    ENVIRONMENT "CCACHE_BASEDIR=${PROJECT_SOURCE_DIR};CCACHE_NOHASHDIR=1;CCACHE_SLOPPINESS=pch_defines,time_macros")
endif()
