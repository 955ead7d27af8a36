# One static library for each folder of src/, linked only to the folders that it may include.
#
#   lumbra_folder(NAME model SOURCES a.cpp b.cpp PUBLIC lumbra_platform PRIVATE GEOS::geos_c)
#
# Headers are included from the root of src/: "model/CCoor.h".
function(lumbra_folder)
  cmake_parse_arguments(ARG "" "NAME" "SOURCES;PUBLIC;PRIVATE" ${ARGN})
  set(target lumbra_${ARG_NAME})
  add_library(${target} STATIC ${ARG_SOURCES})
  target_include_directories(${target} PUBLIC "$<BUILD_INTERFACE:${PROJECT_SOURCE_DIR}/src>")
  target_link_libraries(${target} PUBLIC ${ARG_PUBLIC} PRIVATE ${ARG_PRIVATE})
endfunction()

# What a sanitizer has to be told by the environment of a test.
function(lumbra_test_environment variable)
  set(environment)
  if(LUMBRA_SANITIZE STREQUAL "address")
    list(APPEND environment "LSAN_OPTIONS=suppressions=${PROJECT_SOURCE_DIR}/tests/lsan.supp:print_suppressions=0")
    # Tests of refused memory replace the global operator new.
    list(APPEND environment "ASAN_OPTIONS=alloc_dealloc_mismatch=0")
  endif()
  set(${variable} "${environment}" PARENT_SCOPE)
endfunction()

# A test program of one folder; its tests run in any order and, a second time, under a locale with a decimal comma.
#
#   lumbra_test(NAME model SOURCES CCoorTest.cpp LIBS lumbra_model)
function(lumbra_test)
  cmake_parse_arguments(ARG "" "NAME" "SOURCES;LIBS" ${ARGN})
  set(target test_${ARG_NAME})
  add_executable(${target} ${ARG_SOURCES})
  target_link_libraries(${target} PRIVATE ${ARG_LIBS} lumbra_test_support)
  target_precompile_headers(${target} PRIVATE <gtest/gtest.h> <gmock/gmock.h> <string> <vector>)
  add_test(NAME ${ARG_NAME} COMMAND ${target} --gtest_shuffle)
  lumbra_test_environment(environment)
  set_tests_properties(${ARG_NAME} PROPERTIES ENVIRONMENT "${environment}")
  if(LUMBRA_LOCALE_ES)
    list(APPEND environment "LC_ALL=es_ES.UTF-8" "LOCPATH=${CMAKE_BINARY_DIR}/locale" "LUMBRA_DECIMAL_COMMA=1")
    add_test(NAME ${ARG_NAME}.es_ES COMMAND ${target} --gtest_shuffle)
    set_tests_properties(${ARG_NAME}.es_ES PROPERTIES ENVIRONMENT "${environment}")
  else()
    add_test(NAME ${ARG_NAME}.es_ES COMMAND ${CMAKE_COMMAND} -E echo "Skipped: no locale es_ES.UTF-8 (package locales)")
    set_tests_properties(${ARG_NAME}.es_ES PROPERTIES SKIP_REGULAR_EXPRESSION "Skipped")
  endif()
endfunction()
