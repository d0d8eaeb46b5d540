# What is seen: the views that a folder's classes serve, and the typefaces that they are set in.

set(EMBRIX_FONTS ${CMAKE_SOURCE_DIR}/build/fonts)
if(NOT EXISTS ${EMBRIX_FONTS}/made-by)
  message(FATAL_ERROR "The typefaces are missing. Run tools/setup build, then try again.")
endif()

# embrix_views(surfaces/qt FROM surfaces/qml): all views of that folder, as the QML module Embrix,
# beside the classes of the library of the first folder.
function(embrix_views folder)
  cmake_parse_arguments(PARSE_ARGV 1 arg "" "FROM" "")
  string(REPLACE "/" "_" name ${folder})
  set(target embrix_${name})
  file(GLOB views CONFIGURE_DEPENDS ${CMAKE_SOURCE_DIR}/src/${arg_FROM}/*.qml)
  foreach(view ${views})
    cmake_path(GET view FILENAME file)
    set_source_files_properties(${view} PROPERTIES QT_RESOURCE_ALIAS ${file})
  endforeach()
  # Compiled ahead only as far as the byte code: the rest would be much code for little speed.
  set_target_properties(${target} PROPERTIES AUTOMOC ON QT_QMLCACHEGEN_ARGUMENTS --only-bytecode)
  qt_add_qml_module(${target} URI Embrix VERSION 1.0 RESOURCE_PREFIX / NO_PLUGIN QML_FILES ${views}
                    OUTPUT_DIRECTORY ${CMAKE_BINARY_DIR}/qml/Embrix)
  # What Qt writes includes the classes' headers by their bare names, and minds no warnings.
  target_include_directories(${target} PRIVATE ${CMAKE_SOURCE_DIR}/src/${folder})
  target_compile_options(${target} PRIVATE -Wno-conversion -Wno-shadow -Wno-unused-parameter)

  file(GLOB fonts CONFIGURE_DEPENDS ${EMBRIX_FONTS}/*.ttf)
  foreach(font ${fonts})
    cmake_path(GET font FILENAME file)
    set_source_files_properties(${font} PROPERTIES QT_RESOURCE_ALIAS ${file})
  endforeach()
  # Kept as they are: they hardly compress, and what is not compressed is not copied.
  qt_add_resources(${target} fonts PREFIX /embrix/fonts OPTIONS --no-compress FILES ${fonts})
endfunction()
