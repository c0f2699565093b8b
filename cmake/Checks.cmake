# Checks that are part of every build: a forbidden include or, where it is asked for, a wrong format fails it.
file(GLOB_RECURSE checked_sources CONFIGURE_DEPENDS
  ${PROJECT_SOURCE_DIR}/infra/*.h ${PROJECT_SOURCE_DIR}/infra/*.cpp
  ${PROJECT_SOURCE_DIR}/host/*.h ${PROJECT_SOURCE_DIR}/host/*.cpp
  ${PROJECT_SOURCE_DIR}/tests/*.h ${PROJECT_SOURCE_DIR}/tests/*.cpp ${PROJECT_SOURCE_DIR}/tests/*.c
  ${PROJECT_SOURCE_DIR}/examples/*.c
  ${PROJECT_SOURCE_DIR}/bench/*.h ${PROJECT_SOURCE_DIR}/bench/*.cpp
  ${PROJECT_SOURCE_DIR}/fuzz/*.h ${PROJECT_SOURCE_DIR}/fuzz/*.cpp)

set(arrows_checked ${PROJECT_BINARY_DIR}/arrows.checked)
add_custom_command(OUTPUT ${arrows_checked}
  COMMAND ${PROJECT_SOURCE_DIR}/cmake/check_arrows.sh ${PROJECT_SOURCE_DIR}
  COMMAND ${CMAKE_COMMAND} -E touch ${arrows_checked}
  DEPENDS ${checked_sources} ${PROJECT_SOURCE_DIR}/cmake/check_arrows.sh
  COMMENT "Checking the include arrows" VERBATIM)
add_custom_target(check_arrows ALL DEPENDS ${arrows_checked})

if(PMCLI_CHECK_FORMAT)
  find_program(CLANG_FORMAT NAMES clang-format-14 clang-format REQUIRED)
  set(format_checked ${PROJECT_BINARY_DIR}/format.checked)
  add_custom_command(OUTPUT ${format_checked}
    COMMAND ${PROJECT_SOURCE_DIR}/cmake/check_format.sh ${CLANG_FORMAT} ${PROJECT_SOURCE_DIR}
    COMMAND ${CMAKE_COMMAND} -E touch ${format_checked}
    DEPENDS ${checked_sources} ${PROJECT_SOURCE_DIR}/.clang-format ${PROJECT_SOURCE_DIR}/cmake/check_format.sh
    COMMENT "Checking the format" VERBATIM)
  add_custom_target(check_format ALL DEPENDS ${format_checked})
endif()
