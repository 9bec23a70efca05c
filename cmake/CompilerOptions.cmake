# Warnings, sanitizers and coverage for every target of the project: link `sonvara_options`.
add_library(sonvara_options INTERFACE)
target_compile_options(sonvara_options INTERFACE
  -Wall -Wextra -Wpedantic -Wshadow -Wconversion -Wnon-virtual-dtor -Woverloaded-virtual -Wimplicit-fallthrough)
# Qt and libspeechd want their users so; as all do it, they can share precompiled headers. ccache wants the other two
# with those.
target_compile_options(sonvara_options INTERFACE -fPIC -pthread
  $<$<COMPILE_LANG_AND_ID:CXX,GNU>:-fpch-preprocess>
  "$<$<OR:$<COMPILE_LANG_AND_ID:CXX,Clang>,$<COMPILE_LANG_AND_ID:OBJCXX,Clang>>:SHELL:-Xclang -fno-pch-timestamp>")

# What Debian builds its packages with: checks in the C library's functions and of the stack, and addresses of functions
# that nothing can write to. (Its compilers make programs position independent by themselves.) The checks need
# optimisation, so tests/ takes them back; a compiler that has its own idea of them must not hear of two.
if(NOT APPLE)
  string(APPEND CMAKE_CXX_FLAGS_RELEASE " -U_FORTIFY_SOURCE -D_FORTIFY_SOURCE=2 -fstack-protector-strong")
  add_link_options($<$<CONFIG:Release>:LINKER:-z,relro,-z,now>)
endif()

# Sanitized builds: just enough optimisation to be quick, line numbers for the reports, quick to compile.
# The preset for the address sanitizer takes clang, which needs a third of GCC's time for it. That for threads does
# not: the one of clang 14 stops when Qt starts a process.
set(CMAKE_CXX_FLAGS_SANITIZE "-O1 -g1")

if(SONVARA_SANITIZE)
  target_compile_options(sonvara_options INTERFACE -fsanitize=${SONVARA_SANITIZE} -fno-omit-frame-pointer
    -fno-sanitize-recover=all)
  target_link_options(sonvara_options INTERFACE -fsanitize=${SONVARA_SANITIZE})
endif()

if(SONVARA_COVERAGE)
  target_compile_options(sonvara_options INTERFACE --coverage)
  target_link_options(sonvara_options INTERFACE --coverage)
endif()
