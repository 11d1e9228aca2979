# The command line is a face beside the others: nobody links it but its own program and its tests, and no source
# outside of them names its headers.
#
#   cmake -D SOURCE=... -P Arrows.cmake
cmake_minimum_required(VERSION 3.22)

function(expect_none pattern)
  foreach(file IN LISTS ARGN)
    file(STRINGS ${file} found REGEX "${pattern}")
    if(found)
      message(SEND_ERROR "${file} knows the command line: ${found}")
    endif()
  endforeach()
endfunction()

file(GLOB_RECURSE lists ${SOURCE}/src/CMakeLists.txt ${SOURCE}/python/CMakeLists.txt
     ${SOURCE}/apps/desktop/CMakeLists.txt ${SOURCE}/bench/CMakeLists.txt)
expect_none("power_analysis_cli|apps/cli/" ${SOURCE}/CMakeLists.txt ${lists})
file(GLOB_RECURSE sources ${SOURCE}/src/*.h ${SOURCE}/src/*.cpp ${SOURCE}/python/src/*.h ${SOURCE}/python/src/*.cpp
     ${SOURCE}/apps/desktop/*.h ${SOURCE}/apps/desktop/*.cpp)
expect_none("#include \"cli/" ${sources})
list(LENGTH lists count)
list(LENGTH sources others)
if(count LESS 3 OR others LESS 100)
  message(FATAL_ERROR "only ${count} lists and ${others} sources were found in ${SOURCE}")
endif()
