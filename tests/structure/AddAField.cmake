# A field that is shown in window, table and report is added to a copy of the sources by a patch. It may touch
# five files; then the patched tables are compiled, so that the patch stays a true example.
#
#   cmake -D SOURCE=... -D WORK=... -D CXX=... -P AddAField.cmake
cmake_minimum_required(VERSION 3.22)
set(most_files 5)
set(patch ${CMAKE_CURRENT_LIST_DIR}/add-a-field.patch)

file(REMOVE_RECURSE ${WORK})
file(MAKE_DIRECTORY ${WORK})
file(COPY ${SOURCE}/src DESTINATION ${WORK})

# Not as a part of the repository that the copy may lie in.
set(ENV{GIT_CEILING_DIRECTORIES} ${WORK}/..)
execute_process(COMMAND git apply ${patch} WORKING_DIRECTORY ${WORK} RESULT_VARIABLE failed)
if(failed)
  message(FATAL_ERROR "${patch} does not apply: bring it up to date")
endif()

file(STRINGS ${patch} touched REGEX "^\\+\\+\\+ b/")
list(TRANSFORM touched REPLACE "^\\+\\+\\+ b/" "")
list(LENGTH touched count)
message(STATUS "a field touches ${count} files: ${touched}")
if(count GREATER most_files)
  message(FATAL_ERROR "a field costs more than ${most_files} files")
endif()

set(PROJECT_SOURCE_DIR ${WORK})
set(PROJECT_BINARY_DIR ${WORK})
include(${SOURCE}/cmake/TextIds.cmake)

# What follows from a field's row needs no change of its own, but must go on to compile.
set(sources src/settings/FamilyTables.cpp src/frame/Texts.cpp)
foreach(file IN LISTS touched)
  if(file MATCHES "\\.cpp$")
    list(APPEND sources ${file})
  endif()
endforeach()
foreach(source IN LISTS sources)
  execute_process(COMMAND ${CXX} -std=c++20 -fsyntax-only -I${WORK}/src -I${WORK}/generated ${source}
                  WORKING_DIRECTORY ${WORK} RESULT_VARIABLE failed)
  if(failed)
    message(FATAL_ERROR "${source} does not compile with one more field")
  endif()
endforeach()
