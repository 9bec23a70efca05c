# Builds the macOS adapters with their tests on this machine, as a project of its own, and lists the tests.
if(SONVARA_SANITIZE MATCHES "thread")
  message(STATUS "Left out: the macOS adapters under the thread sanitizer, which GNUstep's libraries are not built for")
  return()
endif()

find_program(SONVARA_CLANGXX clang++)
find_path(SONVARA_GNUSTEP AppKit/AppKit.h PATH_SUFFIXES GNUstep)
if(NOT SONVARA_CLANGXX OR NOT SONVARA_GNUSTEP)
  # Not here and now: who only builds, or runs other tests, needs neither.
  add_test(NAME macos_on_gnustep
    COMMAND sh -c "echo 'The tests of the macOS adapters need clang and GNUstep (tools/install test).'; exit 1")
  set_tests_properties(macos_on_gnustep PROPERTIES LABELS macos)
  return()
endif()

# C++ without Cocoa fits, whichever of our compilers made it, and need not be compiled again.
set(portable ${CMAKE_CURRENT_BINARY_DIR}/portable.cmake)
export(TARGETS sonvara_options sonvara_core sonvara_volume sonvara_posix FILE ${portable})

include(ExternalProject)
set(macos_tests ${CMAKE_CURRENT_BINARY_DIR}/macos)
ExternalProject_Add(macos_on_gnustep
  SOURCE_DIR ${CMAKE_CURRENT_SOURCE_DIR}/macos/gnustep
  BINARY_DIR ${macos_tests}
  CMAKE_ARGS
    -DCMAKE_BUILD_TYPE=${CMAKE_BUILD_TYPE}
    -DCMAKE_COMPILE_WARNING_AS_ERROR=${CMAKE_COMPILE_WARNING_AS_ERROR}
    -DCMAKE_CXX_COMPILER=${SONVARA_CLANGXX}
    -DCMAKE_OBJCXX_COMPILER=${SONVARA_CLANGXX}
    -DCMAKE_CXX_COMPILER_LAUNCHER=${CMAKE_CXX_COMPILER_LAUNCHER}
    -DCMAKE_OBJCXX_COMPILER_LAUNCHER=${CMAKE_CXX_COMPILER_LAUNCHER}
    -DCMAKE_CXX_FLAGS_SANITIZE=${CMAKE_CXX_FLAGS_SANITIZE}
    -DCMAKE_OBJCXX_FLAGS_SANITIZE=${CMAKE_CXX_FLAGS_SANITIZE}
    -DSONVARA_PORTABLE=${portable}
    -DSONVARA_IDENTIFIER=${SONVARA_IDENTIFIER}
    -DSONVARA_VERSION=${PROJECT_VERSION}
    -DCMAKE_OSX_DEPLOYMENT_TARGET=${CMAKE_OSX_DEPLOYMENT_TARGET}
  DEPENDS sonvara_posix sonvara_volume sonvara_core
  # Its steps are counted apart from ours (tools/progress).
  # As clang's precompiled headers hold this folder, another clone must not find them in the compiler's cache (tools/build).
  BUILD_COMMAND ${CMAKE_COMMAND} -E env --unset=CCACHE_BASEDIR "NINJA_STATUS=[macOS adapters %f/%t] "
    ${CMAKE_COMMAND} --build <BINARY_DIR>
  BUILD_ALWAYS ON
  USES_TERMINAL_BUILD ON
  INSTALL_COMMAND "")

# GNUstep keeps what it has made for good, so a leak check would only count that.
function(add_macos_test name runner)
  if(SONVARA_SANITIZE)
    string(PREPEND name "${SONVARA_SANITIZE}/")
  endif()
  add_test(NAME ${name} COMMAND ${CMAKE_CURRENT_SOURCE_DIR}/macos/gnustep/${runner} ${ARGN})
  set_tests_properties(${name} PROPERTIES LABELS macos TIMEOUT 300
    ENVIRONMENT "ASAN_OPTIONS=detect_leaks=0:abort_on_error=0;UBSAN_OPTIONS=print_stacktrace=1")
endfunction()

add_macos_test(macos_test private-session ${macos_tests}/macos/macos_test)
add_macos_test(macos_stand_in_test private-session ${macos_tests}/stand_in_test)
add_macos_test(macos_app_test each-in-its-own-process ${macos_tests}/app_test SettingsTest)

if(NOT SONVARA_SANITIZE)
  add_test(NAME macos_no_destructors_test
    COMMAND python3 -B ${CMAKE_CURRENT_SOURCE_DIR}/tools/no_destructors_test.py ${macos_tests}/adapters/libsonvara_macos.a)
  set_tests_properties(macos_no_destructors_test PROPERTIES LABELS macos TIMEOUT 120)
endif()
