# What every target is compiled with: the language, the warnings, the sanitizer, and the compiler cache where present.
set(CMAKE_CXX_STANDARD 20)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_CXX_VISIBILITY_PRESET hidden)
set(CMAKE_VISIBILITY_INLINES_HIDDEN ON)
set(CMAKE_POSITION_INDEPENDENT_CODE ON)
set(CMAKE_EXPORT_COMPILE_COMMANDS ON)

# Results must not depend on which operations a compiler fuses.
add_compile_options(-Wall -Wextra -Wpedantic -Wshadow -Wnon-virtual-dtor -Woverloaded-virtual -Werror -ffp-contract=off)
add_compile_definitions(_FILE_OFFSET_BITS=64)
if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
  # With optimization these two see overflows in the joining of short std::strings, where there are none (GCC 12).
  add_compile_options($<$<CONFIG:Release>:-Wno-stringop-overflow> $<$<CONFIG:Release>:-Wno-restrict>)
endif()

if(LUMBRA_SANITIZE)
  add_compile_options(-fsanitize=${LUMBRA_SANITIZE} -fno-omit-frame-pointer -fno-sanitize-recover=all)
  add_link_options(-fsanitize=${LUMBRA_SANITIZE})
endif()

if(LUMBRA_FUZZ)
  add_compile_options(-fsanitize=fuzzer-no-link)
endif()

find_program(LUMBRA_CCACHE ccache)
if(LUMBRA_CCACHE AND NOT CMAKE_CXX_COMPILER_LAUNCHER)
  # Precompiled headers are cacheable only when ccache may ignore their time stamps.
  set(CMAKE_CXX_COMPILER_LAUNCHER
      ${CMAKE_COMMAND} -E env CCACHE_SLOPPINESS=pch_defines,time_macros,include_file_mtime,include_file_ctime
      CCACHE_BASEDIR=${CMAKE_SOURCE_DIR} ${LUMBRA_CCACHE})
  if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
    add_compile_options(-fpch-preprocess)
  endif()
endif()
