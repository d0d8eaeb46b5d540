# Language level, warnings and sanitizers for every target.

set(CMAKE_CXX_STANDARD 20)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_EXPORT_COMPILE_COMMANDS ON)

# The same libraries stand in the program and in the module of its windows. What is hidden costs no
# more than in a program that is never loaded.
set(CMAKE_POSITION_INDEPENDENT_CODE ON)
set(CMAKE_CXX_VISIBILITY_PRESET hidden)
set(CMAKE_VISIBILITY_INLINES_HIDDEN ON)

add_compile_options(-Wall -Wextra -Wpedantic -Wconversion -Wshadow -Wnon-virtual-dtor -Werror
                    # A field that is left out takes the default that its record gives it.
                    -Wno-missing-field-initializers)

if(EMBRIX_SANITIZE)
  add_compile_options(-fsanitize=${EMBRIX_SANITIZE} -fno-sanitize-recover=all
                      -fno-omit-frame-pointer -g1)
  string(REPLACE "fuzzer-no-link," "" link_sanitizers "${EMBRIX_SANITIZE}")
  add_link_options(-fsanitize=${link_sanitizers})
  # GCC's overflow and null analyses see ghosts in sanitizer-instrumented code.
  add_compile_options($<$<CXX_COMPILER_ID:GNU>:-Wno-maybe-uninitialized>)
  # GCC 12's own algorithms call what its own headers call deprecated, and Clang says so.
  add_compile_options($<$<CXX_COMPILER_ID:Clang>:-Wno-deprecated-declarations>)
endif()

find_program(CCACHE ccache)
if(CCACHE)
  set(CMAKE_CXX_COMPILER_LAUNCHER ${CCACHE})
endif()
