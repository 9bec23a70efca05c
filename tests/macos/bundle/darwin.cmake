# Toolchain: macOS, with compilers that make files and compile nothing.
set(CMAKE_SYSTEM_NAME Darwin)
set(CMAKE_SYSTEM_PROCESSOR arm64)
foreach(language C CXX OBJCXX)
  set(CMAKE_${language}_COMPILER ${CMAKE_CURRENT_LIST_DIR}/compiler)
  set(CMAKE_${language}_COMPILER_ID AppleClang)
  set(CMAKE_${language}_COMPILER_VERSION 15.0)
  set(CMAKE_${language}_COMPILER_ID_RUN TRUE)
  set(CMAKE_${language}_COMPILER_FORCED TRUE)
  set(CMAKE_${language}_STANDARD_COMPUTED_DEFAULT 17)
endforeach()
foreach(tool AR RANLIB LINKER NM OBJCOPY OBJDUMP STRIP INSTALL_NAME_TOOL)
  set(CMAKE_${tool} ${CMAKE_CURRENT_LIST_DIR}/compiler CACHE FILEPATH "")
endforeach()
set(CMAKE_OSX_SYSROOT "")
set(Threads_FOUND TRUE)
set(CMAKE_CROSSCOMPILING_EMULATOR /usr/bin/env)  # the programs that are made can be run
file(GLOB GTest_DIR /usr/lib/*/cmake/GTest)  # a folder that a Mac does not have
set(CMAKE_CXX_COMPILE_FEATURES cxx_std_11 cxx_std_14 cxx_std_17 cxx_std_20)
