# Flags that every target of the project is compiled with.
add_library(power_analysis_flags INTERFACE)
target_compile_options(power_analysis_flags INTERFACE
  -Wall -Wextra -Wpedantic -Wconversion -Wshadow
  # The digits are part of the contract: no contraction into fused multiply-add.
  -ffp-contract=off)
if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU" AND CMAKE_CXX_COMPILER_VERSION VERSION_LESS 13)
  # g++ 12 reports "literal" + std::string at -O3 (its bug 105651).
  target_compile_options(power_analysis_flags INTERFACE -Wno-restrict)
endif()
if(POWERANALYSIS_WERROR)
  target_compile_options(power_analysis_flags INTERFACE -Werror)
endif()
if(POWERANALYSIS_SANITIZE)
  if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
    # The instrumented code of the standard library's own regular expressions looks uninitialised to g++.
    target_compile_options(power_analysis_flags INTERFACE -Wno-maybe-uninitialized)
  endif()
  target_compile_options(power_analysis_flags INTERFACE
    -fsanitize=address,undefined -fno-sanitize-recover=all -fno-omit-frame-pointer)
  target_link_options(power_analysis_flags INTERFACE -fsanitize=address,undefined)
endif()

# power_analysis_folder(<name> [LINKS <folder>...])
#
# The static library power_analysis_<name> of all sources in src/<name>, or an interface to its headers
# alone. They are reached as "<name>/Header.h" through a folder that holds nothing but a link to src/<name>.
function(power_analysis_folder name)
  cmake_parse_arguments(arg "" "" "LINKS" ${ARGN})
  set(source_dir ${PROJECT_SOURCE_DIR}/src/${name})
  set(include_dir ${PROJECT_BINARY_DIR}/include/${name})
  file(MAKE_DIRECTORY ${include_dir})
  file(CREATE_LINK ${source_dir} ${include_dir}/${name} SYMBOLIC)

  file(GLOB sources CONFIGURE_DEPENDS ${source_dir}/*.cpp)
  set(target power_analysis_${name})
  if(sources)
    add_library(${target} STATIC ${sources})
    set(reach PUBLIC)
  else()
    add_library(${target} INTERFACE)
    set(reach INTERFACE)
  endif()
  target_include_directories(${target} ${reach} ${include_dir})
  target_link_libraries(${target} ${reach} power_analysis_flags)
  foreach(link IN LISTS arg_LINKS)
    target_link_libraries(${target} ${reach} power_analysis_${link})
  endforeach()
endfunction()

# power_analysis_test(<name> LINKS <target>...)
#
# One test program of all sources in tests/<name>; support/TestData.h tells it where its files are.
function(power_analysis_test name)
  cmake_parse_arguments(arg "" "" "LINKS" ${ARGN})
  file(GLOB sources CONFIGURE_DEPENDS ${PROJECT_SOURCE_DIR}/tests/${name}/*_test.cpp)
  if(NOT sources)
    return()
  endif()
  set(test_data ${PROJECT_SOURCE_DIR}/tests/${name}/data)
  configure_file(${PROJECT_SOURCE_DIR}/tests/support/TestData.cpp.in ${name}_data.cpp)
  add_executable(${name}_test ${sources} ${CMAKE_CURRENT_BINARY_DIR}/${name}_data.cpp)
  target_include_directories(${name}_test PRIVATE ${PROJECT_SOURCE_DIR}/tests)
  # The tests' own code is compiled more often than it is run, and under the sanitizers optimizing it takes
  # longer than all the rest. What is tested stays as the preset has it.
  target_compile_options(${name}_test PRIVATE -O0)
  target_link_libraries(${name}_test PRIVATE ${arg_LINKS} power_analysis_flags GTest::gtest_main GTest::gmock)
  add_test(NAME ${name} COMMAND ${name}_test)
  set_tests_properties(${name} PROPERTIES TIMEOUT 600)
endfunction()
