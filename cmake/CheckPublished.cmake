# Fails when FILE is not what PROGRAM prints with OPTION.
execute_process(COMMAND ${PROGRAM} ${OPTION} OUTPUT_VARIABLE printed RESULT_VARIABLE result)
if(NOT result EQUAL 0)
  message(FATAL_ERROR "${PROGRAM} ${OPTION} ends with ${result}")
endif()
file(READ ${FILE} checked_in)
if(NOT printed STREQUAL checked_in)
  message(FATAL_ERROR "${FILE} is stale: run \"ninja update_docs\" and commit it")
endif()
