# clang-tidy beside the compiler, in the preset `tidy`. Most of its time goes into the headers of the libraries. It
# therefore reads each target as one file, and these headers once: two minutes for the whole tree and not twenty.
# The names in unnamed namespaces must then differ within a target.
set(CMAKE_UNITY_BUILD ON)
set(CMAKE_UNITY_BUILD_BATCH_SIZE 0)
target_compile_options(sonvara_options INTERFACE -Wno-shadow)  # of another file's name

# That file stands in the build folder, where clang-tidy looks for the configuration of its room.
set(sonvara_tidy_configurations)
foreach(folder src tests packaging)
  file(GLOB_RECURSE found RELATIVE ${PROJECT_SOURCE_DIR} CONFIGURE_DEPENDS ${PROJECT_SOURCE_DIR}/${folder}/.clang-tidy)
  list(APPEND sonvara_tidy_configurations ${found})
endforeach()
foreach(configuration ${sonvara_tidy_configurations})
  cmake_path(GET configuration PARENT_PATH room)
  file(MAKE_DIRECTORY ${PROJECT_BINARY_DIR}/${room})
  file(CREATE_LINK ${PROJECT_SOURCE_DIR}/${configuration} ${PROJECT_BINARY_DIR}/${configuration} SYMBOLIC)
endforeach()

# Another configuration is another command, so that everything is looked at again.
set(sonvara_tidy_hash)
foreach(configuration .clang-tidy ${sonvara_tidy_configurations})
  set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS ${PROJECT_SOURCE_DIR}/${configuration})
  file(SHA256 ${PROJECT_SOURCE_DIR}/${configuration} hash)
  string(APPEND sonvara_tidy_hash ${hash})
endforeach()
string(SHA256 sonvara_tidy_hash "${sonvara_tidy_hash}")
list(APPEND CMAKE_CXX_CLANG_TIDY --extra-arg=-DSONVARA_TIDY_${sonvara_tidy_hash})

# What Qt's compiler generates is a file of its own, and nobody reads it: one quick check, as there must be one.
function(sonvara_leave_generated directory)
  get_property(targets DIRECTORY ${directory} PROPERTY BUILDSYSTEM_TARGETS)
  foreach(target ${targets})
    get_target_property(folder ${target} BINARY_DIR)
    file(WRITE ${folder}/${target}_autogen/.clang-tidy "Checks: '-*,misc-definitions-in-headers'\n")
  endforeach()
  get_property(folders DIRECTORY ${directory} PROPERTY SUBDIRECTORIES)
  foreach(folder ${folders})
    sonvara_leave_generated(${folder})
  endforeach()
endfunction()
cmake_language(DEFER DIRECTORY ${PROJECT_SOURCE_DIR} CALL sonvara_leave_generated ${PROJECT_SOURCE_DIR})
