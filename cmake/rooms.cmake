# Compiling a directory of sources as one file takes a fraction of the time that its files
# take one by one, since each includes much of the C++ library.
option(WIFICONFD_BY_ROOM "compile each directory as one file" OFF)

# compile_by_room(TARGET): each directory of the target's sources is one file for the
# compiler. Sources with options of their own stay apart. Only in files with "UnifiedSource"
# in their names does clang's static analyzer follow sources that are included.
function(compile_by_room target)
  if(NOT WIFICONFD_BY_ROOM)
    return()
  endif()
  get_target_property(sources ${target} SOURCES)
  foreach(source IN LISTS sources)
    cmake_path(GET source PARENT_PATH directory)
    cmake_path(GET directory FILENAME room)
    set_source_files_properties(${source} PROPERTIES UNITY_GROUP UnifiedSource_${room})
  endforeach()
  set_target_properties(${target} PROPERTIES UNITY_BUILD ON UNITY_BUILD_MODE GROUP)
endfunction()
