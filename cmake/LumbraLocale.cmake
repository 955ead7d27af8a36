# The locale with a decimal comma under which the tests run a second time, made in the build folder so that the machine
# need not have it. Sets LUMBRA_LOCALE_ES when it is there.
set(folder "${CMAKE_BINARY_DIR}/locale")
find_program(LUMBRA_LOCALEDEF localedef)
if(NOT EXISTS "${folder}/es_ES.UTF-8/LC_NUMERIC" AND LUMBRA_LOCALEDEF)
  file(MAKE_DIRECTORY "${folder}")
  execute_process(COMMAND "${LUMBRA_LOCALEDEF}" --no-archive -i es_ES -f UTF-8 "${folder}/es_ES.UTF-8"
                  OUTPUT_QUIET ERROR_QUIET)
endif()
if(EXISTS "${folder}/es_ES.UTF-8/LC_NUMERIC")
  set(LUMBRA_LOCALE_ES ON)
else()
  set(LUMBRA_LOCALE_ES OFF)
  message(STATUS "No locale es_ES.UTF-8 can be made (package locales): the tests' second run will be skipped")
endif()
