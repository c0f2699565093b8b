# What run_tests.py runs: programs of GoogleTest, on the target under its emulator, and scripts with their arguments. `name` stands
# in front of the names of their tests.
function(json_list variable)
  list(TRANSFORM ARGN REPLACE "(.+)" "\"\\1\"")
  list(JOIN ARGN ", " joined)
  set(${variable} "[${joined}]" PARENT_SCOPE)
endfunction()
function(register_test_program name target)
  json_list(command ${CMAKE_CROSSCOMPILING_EMULATOR} $<TARGET_FILE:${target}>)
  set_property(GLOBAL APPEND PROPERTY PMCLI_TEST_PROGRAMS "{\"name\": \"${name}\", \"command\": ${command}}")
endfunction()
function(register_test_script name)
  json_list(command ${ARGN})
  set_property(GLOBAL APPEND PROPERTY PMCLI_TEST_SCRIPTS "{\"name\": \"${name}\", \"command\": ${command}}")
endfunction()

# Writes the list that run_tests.py reads, when all is registered.
function(write_test_list)
  get_property(programs GLOBAL PROPERTY PMCLI_TEST_PROGRAMS)
  get_property(scripts GLOBAL PROPERTY PMCLI_TEST_SCRIPTS)
  list(JOIN programs ",\n  " programs)
  list(JOIN scripts ",\n  " scripts)
  file(GENERATE OUTPUT ${PROJECT_BINARY_DIR}/tests.json
    CONTENT "{\"programs\": [\n  ${programs}],\n \"scripts\": [\n  ${scripts}]}\n")
endfunction()
