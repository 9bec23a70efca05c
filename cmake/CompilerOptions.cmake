# Warnings, sanitizers and coverage for every target of the project: link `sonvara_options`.
add_library(sonvara_options INTERFACE)
target_compile_options(sonvara_options INTERFACE
  -Wall -Wextra -Wpedantic -Wshadow -Wconversion -Wnon-virtual-dtor -Woverloaded-virtual -Wimplicit-fallthrough
  -Werror)

# Sanitized builds: just enough optimisation to be quick, line numbers for the reports, quick to compile.
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
