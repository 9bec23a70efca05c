# What the build needs on macOS before any target. The oldest system is set before the project, in the root.
enable_language(OBJCXX)
set(CMAKE_OBJCXX_STANDARD ${CMAKE_CXX_STANDARD})
set(CMAKE_OBJCXX_STANDARD_REQUIRED ON)
set(CMAKE_OBJCXX_EXTENSIONS OFF)

# A bundle that goes to another Mac must not need the libraries of this one, and the hardened runtime would not
# load them: static ones first.
set(CMAKE_FIND_LIBRARY_SUFFIXES .a .tbd .dylib)
