# One library for each folder of src/, and a wall between the folders.
#
# Includes are written from src/ ("frame/frame.h"), yet no target has src/ itself on its include
# path. Each folder is shown through a directory of its own that holds one link, and a target sees
# only the folders that it USES, and those that they use. An include of a folder above does not
# compile.

set(EMBRIX_VIEWS ${CMAKE_BINARY_DIR}/views)

function(embrix_view target folder source_folder scope)
  set(view ${EMBRIX_VIEWS}/${target})
  cmake_path(GET folder PARENT_PATH parent)
  file(MAKE_DIRECTORY ${view}/${parent})
  if(NOT EXISTS ${view}/${folder})
    file(CREATE_LINK ${source_folder} ${view}/${folder} SYMBOLIC)
  endif()
  target_include_directories(${target} ${scope} ${view})
endfunction()

# embrix_folder(base USES … LIBRARIES …): the library embrix_base from src/base/*.cpp.
function(embrix_folder folder)
  cmake_parse_arguments(PARSE_ARGV 1 arg "" "" "USES;LIBRARIES")
  string(REPLACE "/" "_" name ${folder})
  set(target embrix_${name})
  set(source_folder ${CMAKE_SOURCE_DIR}/src/${folder})
  file(GLOB sources CONFIGURE_DEPENDS ${source_folder}/*.cpp)
  if(APPLE)
    file(GLOB objective_sources CONFIGURE_DEPENDS ${source_folder}/*.mm)
    list(APPEND sources ${objective_sources})
  endif()
  if(sources)
    add_library(${target} STATIC ${sources})
    set(scope PUBLIC)
  else()
    add_library(${target} INTERFACE)
    set(scope INTERFACE)
  endif()
  embrix_view(${target} ${folder} ${source_folder} ${scope})
  list(TRANSFORM arg_USES REPLACE "/" "_")
  list(TRANSFORM arg_USES PREPEND embrix_)
  target_link_libraries(${target} ${scope} ${arg_USES} ${arg_LIBRARIES})
  list(LENGTH sources count)
  if(EMBRIX_PRECOMPILE AND count GREATER 8)
    target_precompile_headers(${target} PRIVATE
      <algorithm> <functional> <map> <memory> <optional> <string> <vector> <fmt/format.h>
      <nlohmann/json.hpp>)
  endif()
endfunction()

# embrix_tests(base USES … LIBRARIES … PROPERTIES …): the executable base_tests from
# tests/base/*_test.cpp, each of its cases known to ctest by name and with those properties.
function(embrix_tests folder)
  cmake_parse_arguments(PARSE_ARGV 1 arg "" "" "USES;LIBRARIES;PROPERTIES")
  string(REPLACE "/" "_" name ${folder})
  set(target ${name}_tests)
  file(GLOB sources CONFIGURE_DEPENDS ${CMAKE_SOURCE_DIR}/tests/${folder}/*.cpp)
  if(NOT sources)
    return()
  endif()
  add_executable(${target} ${sources})
  list(TRANSFORM arg_USES REPLACE "/" "_")
  list(TRANSFORM arg_USES PREPEND embrix_)
  target_link_libraries(${target} PRIVATE ${arg_USES} ${arg_LIBRARIES} GTest::gmock GTest::gtest_main)
  # What is tested is built for release; the tests themselves only have to be built soon.
  target_compile_options(${target} PRIVATE -O0)
  if(EMBRIX_PRECOMPILE)
    target_precompile_headers(${target} PRIVATE
      <functional> <map> <memory> <optional> <string> <vector> <gmock/gmock.h> <gtest/gtest.h>)
  endif()
  # A parameter whose bytes stand in the name of its case would change that name from run to run.
  gtest_discover_tests(${target} DISCOVERY_MODE PRE_TEST NO_PRETTY_VALUES
                       TEST_PREFIX "${EMBRIX_TEST_PREFIX}"
                       PROPERTIES TIMEOUT 300 ${arg_PROPERTIES})
endfunction()
